#ifndef VESK_DEVKIT_BACKEND_SERVER_CONNECTION_H
#define VESK_DEVKIT_BACKEND_SERVER_CONNECTION_H

#include <cstdint>
#include <optional>

namespace vesk::backend {

/// The HTTP library hands out no socket, so a connection is looked up among the open files of the
/// process (on Windows: its handles) by its ports. It stays open for as long as the handler of its
/// request runs; use it there only.
class Connection {
public:
    static std::optional<Connection> find(int localPort, int peerPort);

    /// Before a listening socket is bound: no other program gets its port, but the one after this
    /// program gets it at once.
    static void claimPort(std::intptr_t listener);

    /// Ends every connection of a port, so that no thread waits for its peer any longer.
    static void shutdownAll(int localPort);

    /// Whether reset() resets. Windows resets when the last handle is closed only, and that one is
    /// the HTTP library's: there the peer sees an orderly end.
    static bool canReset();

    /// The peer sees a TCP reset at once, with or without TLS.
    void reset() const;

    /// Whether the peer has closed its side.
    bool peerGone() const;

private:
    explicit Connection(std::intptr_t socket) : mSocket(socket) {}

    std::intptr_t mSocket;
};

} // namespace vesk::backend

#endif
