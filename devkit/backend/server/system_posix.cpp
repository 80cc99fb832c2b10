#include "server/system.h"

#include <openssl/evp.h>
#include <poll.h>
#include <signal.h>
#include <stdexcept>
#include <sys/socket.h>

#include "server/json.h"

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

std::string md5Hex(std::string_view data) {
    std::string digest(EVP_MAX_MD_SIZE, '\0');
    unsigned int size = 0;
    if (EVP_Digest(data.data(), data.size(), reinterpret_cast<unsigned char*>(digest.data()), &size,
                   EVP_md5(), nullptr) != 1) {
        throw std::runtime_error("OpenSSL computed no digest");
    }
    return toHex(std::string_view(digest).substr(0, size));
}

} // namespace vesk::backend
