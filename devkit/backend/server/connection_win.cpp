#include "server/connection.h"

#include <winsock2.h>

namespace vesk::backend {

namespace {

// Handles are multiples of four and the lowest free one is taken: of a few hundred none is higher.
constexpr std::intptr_t kHandleStep = 4;
constexpr std::intptr_t kLastHandle = 0x2000;

using AddressQuery = int(WSAAPI*)(SOCKET, sockaddr*, int*);

/// The port of one end of a connected socket, 0 when there is none, or the handle is no socket's.
int portOf(std::intptr_t handle, AddressQuery query) {
    sockaddr_in address{};
    int size = sizeof(address);
    if (query(static_cast<SOCKET>(handle), reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
        address.sin_family != AF_INET) {
        return 0;
    }
    return ntohs(address.sin_port);
}

} // namespace

std::optional<Connection> Connection::find(int localPort, int peerPort) {
    for (std::intptr_t handle = kHandleStep; handle <= kLastHandle; handle += kHandleStep) {
        if (portOf(handle, ::getsockname) == localPort &&
            portOf(handle, ::getpeername) == peerPort) {
            return Connection(handle);
        }
    }
    return std::nullopt;
}

void Connection::claimPort(std::intptr_t listener) {
    // A port is free here as soon as its program has ended.
    const BOOL on = TRUE;
    ::setsockopt(static_cast<SOCKET>(listener), SOL_SOCKET, SO_EXCLUSIVEADDRUSE,
                 reinterpret_cast<const char*>(&on), sizeof(on));
}

void Connection::shutdownAll(int localPort) {
    for (std::intptr_t handle = kHandleStep; handle <= kLastHandle; handle += kHandleStep) {
        if (portOf(handle, ::getsockname) == localPort && portOf(handle, ::getpeername) != 0) {
            ::shutdown(static_cast<SOCKET>(handle), SD_BOTH);
        }
    }
}

bool Connection::canReset() {
    return false;
}

void Connection::reset() const {
    ::shutdown(static_cast<SOCKET>(mSocket), SD_BOTH);
}

bool Connection::peerGone() const {
    const auto handle = static_cast<SOCKET>(mSocket);
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(handle, &readable);
    timeval now{};
    char next = 0;
    // The request has been read: what is readable is the end, or an error.
    return ::select(0, &readable, nullptr, nullptr, &now) > 0 &&
           ::recv(handle, &next, 1, MSG_PEEK) <= 0;
}

} // namespace vesk::backend
