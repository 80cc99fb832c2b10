#ifndef VESK_MODULE_VESKRUNTIME_H
#define VESK_MODULE_VESKRUNTIME_H

namespace Braxel {
namespace VESK {

/// Frees what the C++ runtime inside the library keeps for itself and would leave behind. The last
/// thing that runs before the library leaves the process.
void ReleaseRuntimeMemory();

} // namespace VESK
} // namespace Braxel

#endif
