#include "platformimpl/foundation/os/thread.h"

#include <csignal>
#include <pthread.h>

#include "platformimpl/foundation/os/threadhold.h"

namespace Braxel {
namespace VESK {
namespace os {

// The library is linked to stay loaded, so nothing has to be held here.
ThreadHold::ThreadHold() : taken(true) {}
void GiveBack(const ThreadHold& /*hold*/) {}
void EnterThread() {}
void LeaveThread(const ThreadHold& /*hold*/) {}

namespace {

void* ThreadMain(void* start) {
    RunThread(start);
    return nullptr;
}

} // namespace

int StartSystemThread(void* start) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    size_t usual = 0;
    if (pthread_attr_getstacksize(&attributes, &usual) != 0 || usual < kThreadStack) {
        pthread_attr_setstacksize(&attributes, kThreadStack);
    }
    pthread_t thread = {};
    const int result = pthread_create(&thread, &attributes, &ThreadMain, start);
    pthread_attr_destroy(&attributes);
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
