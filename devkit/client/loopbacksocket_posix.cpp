#include "client/loopbacksocket.h"

#include <arpa/inet.h>
#include <cerrno>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace vesk::scanclient {

LoopbackSocket::LoopbackSocket() = default;

LoopbackSocket::~LoopbackSocket() {
    if (mSocket != kNone) {
        ::close(static_cast<int>(mSocket));
    }
}

bool LoopbackSocket::open(uint16_t port) {
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0) {
        return false;
    }
    mSocket = static_cast<uintptr_t>(fd);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 ||
           errno == EINPROGRESS;
}

LoopbackSocket::State LoopbackSocket::connected() {
    if (!isReady(true)) {
        return State::Waiting;
    }
    int error = 0;
    socklen_t size = sizeof(error);
    const int read = ::getsockopt(static_cast<int>(mSocket), SOL_SOCKET, SO_ERROR, &error, &size);
    return read == 0 && error == 0 ? State::Ready : State::Failed;
}

bool LoopbackSocket::send(const std::string& text) {
    // The game's process must not get a signal because of the backend.
    return ::send(static_cast<int>(mSocket), text.data(), text.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(text.size());
}

LoopbackSocket::State LoopbackSocket::receive(std::string& text) {
    if (!isReady(false)) {
        return State::Waiting;
    }
    char buffer[4096];
    const ssize_t size = ::recv(static_cast<int>(mSocket), buffer, sizeof(buffer), 0);
    if (size <= 0) {
        return State::Failed;
    }
    text.append(buffer, static_cast<size_t>(size));
    return State::Ready;
}

bool LoopbackSocket::isReady(bool forWriting) const {
    pollfd state{};
    state.fd = static_cast<int>(mSocket);
    state.events = forWriting ? POLLOUT : POLLIN;
    return ::poll(&state, 1, static_cast<int>(kSlice.count())) > 0;
}

} // namespace vesk::scanclient
