#ifndef VESK_MODULE_VESKUNLOAD_WIN_H
#define VESK_MODULE_VESKUNLOAD_WIN_H

#include <windows.h>

namespace Braxel {
namespace VESK {
namespace unload {

// How the library leaves the process. The first three are for its entry point, which the loader
// calls with its lock held: they neither log nor wait.

/// The library has been loaded.
void OnLoaded(HMODULE module);

/// The calling thread of the process ends, and whatever reference it had is given back.
void OnThreadEnd();

/// The library leaves, and the process goes on.
void OnLeave();

/// See VESKModule::StartUnload.
void Start();

/// Whether it was called.
bool Started();

} // namespace unload
} // namespace VESK
} // namespace Braxel

#endif
