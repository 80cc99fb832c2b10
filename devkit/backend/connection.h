/// @file
/// The TCP connection under a request.
#ifndef VESK_DEVKIT_BACKEND_CONNECTION_H
#define VESK_DEVKIT_BACKEND_CONNECTION_H

#include <optional>

namespace vesk::backend {

/// The HTTP library hands out no socket, so a connection is looked up among the open files of the
/// process by its ports. It stays open for as long as the handler of its request runs; use it there
/// only.
class Connection {
public:
    static std::optional<Connection> find(int localPort, int peerPort);

    /// Ends every connection of a port, so that no thread waits for its peer any longer.
    static void shutdownAll(int localPort);

    /// The peer sees a TCP reset at once, with or without TLS.
    void reset() const;

    /// Whether the peer has closed its side.
    bool peerGone() const;

private:
    explicit Connection(int fd) : mFd(fd) {}

    int mFd;
};

} // namespace vesk::backend

#endif // VESK_DEVKIT_BACKEND_CONNECTION_H
