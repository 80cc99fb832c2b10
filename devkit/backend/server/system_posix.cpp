#include "server/system.h"

#include <poll.h>
#include <signal.h>
#include <sys/socket.h>

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

void claimPort(std::intptr_t listener) {
    const int on = 1;
    ::setsockopt(static_cast<int>(listener), SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
}

bool hasArrived(std::intptr_t socket) {
    pollfd state{};
    state.fd = static_cast<int>(socket);
    state.events = POLLIN;
    return ::poll(&state, 1, 0) > 0;
}

bool canReset() {
    return true;
}

} // namespace vesk::backend
