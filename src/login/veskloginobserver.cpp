#include "vesk/veskloginobserver.h"

namespace Braxel {
namespace VESK {

// Defined here so that the class has one home, in the library.
VESKLoginObserver::~VESKLoginObserver() = default;

} // namespace VESK
} // namespace Braxel
