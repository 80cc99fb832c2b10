#ifndef VESK_PLATFORMIMPL_FOUNDATION_OS_THREADHOLD_H
#define VESK_PLATFORMIMPL_FOUNDATION_OS_THREADHOLD_H

namespace Braxel {
namespace VESK {
namespace os {

// What keeps the code of a thread in the process. For StartDetachedThread() alone.

/// Taken by the creator, before the thread starts.
struct ThreadHold {
    ThreadHold();
    bool taken;
    void* module = nullptr;
};

/// Given back by the creator of a thread that has not started.
void GiveBack(const ThreadHold& hold);

/// Starts a thread that calls RunThread(start). @return 0, or an error number.
int StartSystemThread(void* start);
void RunThread(void* start);

/// The first and the last thing on the thread. On Windows the last one does not return.
void EnterThread();
void LeaveThread(const ThreadHold& hold);

} // namespace os
} // namespace VESK
} // namespace Braxel

#endif
