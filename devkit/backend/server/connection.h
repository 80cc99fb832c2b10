#ifndef VESK_DEVKIT_BACKEND_SERVER_CONNECTION_H
#define VESK_DEVKIT_BACKEND_SERVER_CONNECTION_H

#include <optional>

#include "httplib.h"

namespace vesk::backend {

/// The HTTP library hands out no socket, so a connection is looked up by its ports. It stays open
/// for as long as the handler of its request runs; use it there only.
class Connection {
public:
    static std::optional<Connection> find(int localPort, int peerPort);

    /// The peer sees a TCP reset at once, with or without TLS; an orderly end unless canReset().
    void reset() const;

    /// Whether the peer has closed its side. Its request has been read, and no other comes.
    bool peerGone() const;

private:
    explicit Connection(socket_t socket) : mSocket(socket) {}

    socket_t mSocket;
};

} // namespace vesk::backend

#endif
