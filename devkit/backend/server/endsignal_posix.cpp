#include "server/endsignal.h"

#include <signal.h>

namespace vesk::backend {

namespace {

sigset_t endSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    return signals;
}

} // namespace

EndSignal::EndSignal() {
    // Blocked before any thread starts, so that only wait() sees them.
    const sigset_t signals = endSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void EndSignal::wait() {
    const sigset_t signals = endSignals();
    int received = 0;
    sigwait(&signals, &received);
}

} // namespace vesk::backend
