#include "module/veskmodule.h"

namespace Braxel {
namespace VESK {

const char VESKModule::kTag[] = "UPRA";

} // namespace VESK
} // namespace Braxel
