#include "server/connection.h"

#include "server/system.h"

namespace vesk::backend {

namespace {

// Descriptors and handles are small: the lowest free one is taken.
constexpr socket_t kLastSocket = 0x2000;
constexpr int kBothSides = 2;

using AddressQuery = decltype(&::getsockname);

/// The port of one end of a connected socket, 0 when there is none, or it is no socket.
int portOf(socket_t socket, AddressQuery query) {
    sockaddr_in address{};
    socklen_t size = sizeof(address);
    if (query(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
        address.sin_family != AF_INET) {
        return 0;
    }
    return ntohs(address.sin_port);
}

} // namespace

std::optional<Connection> Connection::find(int localPort, int peerPort) {
    for (socket_t socket = 0; socket <= kLastSocket; ++socket) {
        if (portOf(socket, ::getsockname) == localPort &&
            portOf(socket, ::getpeername) == peerPort) {
            return Connection(socket);
        }
    }
    return std::nullopt;
}

void Connection::reset() const {
    // Linux: dissolving the association of a connected socket sends a reset. Closing it would not
    // do, as the HTTP library still owns the descriptor.
    sockaddr none{};
    none.sa_family = AF_UNSPEC;
    static_cast<void>(::connect(mSocket, &none, sizeof(none)));
    ::shutdown(mSocket, kBothSides);
}

bool Connection::peerGone() const {
    return hasArrived(static_cast<std::intptr_t>(mSocket));
}

} // namespace vesk::backend
