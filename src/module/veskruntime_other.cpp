#include "module/veskruntime.h"

namespace Braxel {
namespace VESK {

void ReleaseRuntimeMemory() {}

} // namespace VESK
} // namespace Braxel
