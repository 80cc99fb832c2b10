#include "platformimpl/foundation/os/thread.h"

#include <cerrno>
#include <new>

#include "platformimpl/foundation/os/threadhold.h"

namespace Braxel {
namespace VESK {
namespace os {

namespace {

struct ThreadStart {
    ThreadRoutine routine;
    void* argument;
    ThreadHold hold;
};

} // namespace

void RunThread(void* context) {
    EnterThread();
    const ThreadStart start = *static_cast<ThreadStart*>(context);
    delete static_cast<ThreadStart*>(context);
    try {
        start.routine(start.argument);
    } catch (...) { // NOLINT(bugprone-empty-catch): nobody is left to tell
    }
    LeaveThread(start.hold);
}

int StartDetachedThread(ThreadRoutine routine, void* argument) {
    ThreadStart* start = new (std::nothrow) ThreadStart{routine, argument, {}};
    if (start == nullptr) {
        return EAGAIN;
    }
    int result = EAGAIN;
    if (start->hold.taken) {
        result = StartSystemThread(start);
        if (result != 0) {
            GiveBack(start->hold);
        }
    }
    if (result != 0) {
        delete start;
    }
    return result;
}

} // namespace os
} // namespace VESK
} // namespace Braxel
