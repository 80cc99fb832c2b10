#ifndef VESK_PLATFORMIMPL_FOUNDATION_OS_THREAD_H
#define VESK_PLATFORMIMPL_FOUNDATION_OS_THREAD_H

#include <cstddef>
#include <cstdint>

namespace Braxel {
namespace VESK {
namespace os {

using ThreadRoutine = void (*)(void* argument);

/// What a thread of the library has at least, whatever the system or the game's program gives a
/// thread that asks for nothing: a log line alone takes 50 KB, and observer methods run there.
constexpr size_t kThreadStack = 512U << 10;

/// Starts a detached thread. Every thread of the library is started here.
///
/// The game may unload the library while its threads still run. The thread therefore holds a
/// reference on this module, taken before it starts, and leaves through the call that drops the
/// reference and ends the thread at once, so that the last one out unmaps the code. An exception
/// of @p routine ends the thread and nothing else.
/// @return 0, or an error number; nothing runs then.
int StartDetachedThread(ThreadRoutine routine, void* argument);

/// A number that no two running threads share.
uint64_t CurrentThreadId();

/// Keeps a write to a closed connection from ending the process through SIGPIPE. For the calling
/// thread only; Windows has no such signal.
void BlockBrokenPipeSignal();

} // namespace os
} // namespace VESK
} // namespace Braxel

#endif
