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

// A thread of ours counts as running from before it starts until the loader has told that it is
// gone: only then it has given back its reference on the library.

/// A thread is about to start.
void ThreadStarts();

/// It could not be started.
void ThreadHasNotStarted();

/// To be called on the thread itself, before anything else.
void MarkThread();

/// See VESKModule::StartUnload.
void Start();

/// Whether it was called.
bool Started();

} // namespace unload
} // namespace VESK
} // namespace Braxel

#endif
