#include "platformimpl/foundation/os/thread.h"

#include <cerrno>
#include <csignal>
#include <new>

namespace Braxel {
namespace VESK {
namespace os {

namespace {

struct ThreadStart {
    ThreadRoutine routine;
    void* argument;
};

// The library is linked to stay loaded, so no reference is needed here.
void* RunThread(void* context) {
    const ThreadStart start = *static_cast<ThreadStart*>(context);
    delete static_cast<ThreadStart*>(context);
    try {
        start.routine(start.argument);
    } catch (...) { // NOLINT(bugprone-empty-catch): nobody is left to tell
    }
    return nullptr;
}

} // namespace

int StartDetachedThread(pthread_t* thread, ThreadRoutine routine, void* argument) {
    ThreadStart* start = new (std::nothrow) ThreadStart{routine, argument};
    if (start == nullptr) {
        return EAGAIN;
    }
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    size_t usual = 0;
    if (pthread_attr_getstacksize(&attributes, &usual) != 0 || usual < kThreadStack) {
        pthread_attr_setstacksize(&attributes, kThreadStack);
    }
    const int result = pthread_create(thread, &attributes, &RunThread, start);
    pthread_attr_destroy(&attributes);
    if (result != 0) {
        delete start;
    }
    return result;
}

uint64_t CurrentThreadId() {
    return static_cast<uint64_t>(pthread_self());
}

void BlockBrokenPipeSignal() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

} // namespace os
} // namespace VESK
} // namespace Braxel
