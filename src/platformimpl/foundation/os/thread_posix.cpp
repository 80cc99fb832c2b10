#include "platformimpl/foundation/os/thread.h"

#include <csignal>

#include "platformimpl/foundation/os/threadhold.h"

namespace Braxel {
namespace VESK {
namespace os {

// The library is linked to stay loaded, so nothing has to be held here.
ThreadHold::ThreadHold() : taken(true) {}
void GiveBack(const ThreadHold& /*hold*/) {}
void EnterThread() {}
void LeaveThread(const ThreadHold& /*hold*/) {}

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
