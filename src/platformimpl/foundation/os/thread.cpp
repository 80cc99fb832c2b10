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

void* RunThread(void* context) {
    EnterThread();
    const ThreadStart start = *static_cast<ThreadStart*>(context);
    delete static_cast<ThreadStart*>(context);
    try {
        start.routine(start.argument);
    } catch (...) { // NOLINT(bugprone-empty-catch): nobody is left to tell
    }
    LeaveThread(start.hold);
    return nullptr;
}

} // namespace

int StartDetachedThread(pthread_t* thread, ThreadRoutine routine, void* argument) {
    ThreadStart* start = new (std::nothrow) ThreadStart{routine, argument, {}};
    if (start == nullptr) {
        return EAGAIN;
    }
    int result = EAGAIN;
    if (start->hold.taken) {
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
        // On Windows nothing is usual, and a size is the least: of a program whose threads get
        // more, ours get as much.
        size_t usual = 0;
        if (pthread_attr_getstacksize(&attributes, &usual) != 0 || usual < kThreadStack) {
            pthread_attr_setstacksize(&attributes, kThreadStack);
        }
        result = pthread_create(thread, &attributes, &RunThread, start);
        pthread_attr_destroy(&attributes);
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
