#include "server/connection.h"

#include <arpa/inet.h>
#include <cstdlib>
#include <dirent.h>
#include <memory>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <vector>

namespace vesk::backend {

namespace {

using AddressQuery = int (*)(int, sockaddr*, socklen_t*);

/// The port of one end of a connected socket, 0 when there is none.
int portOf(int fd, AddressQuery query) {
    sockaddr_in address{};
    socklen_t size = sizeof(address);
    if (query(fd, reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
        address.sin_family != AF_INET) {
        return 0;
    }
    return ntohs(address.sin_port);
}

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

std::vector<int> openFiles() {
    std::vector<int> fds;
    const std::unique_ptr<DIR, CloseDirectory> directory(opendir("/proc/self/fd"));
    if (!directory) {
        return fds;
    }
    while (const dirent* entry = readdir(directory.get())) {
        if (entry->d_name[0] != '.') {
            fds.push_back(std::atoi(entry->d_name));
        }
    }
    return fds;
}

} // namespace

std::optional<Connection> Connection::find(int localPort, int peerPort) {
    for (const int fd : openFiles()) {
        if (portOf(fd, ::getsockname) == localPort && portOf(fd, ::getpeername) == peerPort) {
            return Connection(fd);
        }
    }
    return std::nullopt;
}

void Connection::claimPort(std::intptr_t listener) {
    const int on = 1;
    ::setsockopt(static_cast<int>(listener), SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
}

void Connection::shutdownAll(int localPort) {
    for (const int fd : openFiles()) {
        if (portOf(fd, ::getsockname) == localPort && portOf(fd, ::getpeername) != 0) {
            ::shutdown(fd, SHUT_RDWR);
        }
    }
}

bool Connection::canReset() {
    return true;
}

void Connection::reset() const {
    // Linux: dissolving the association of a connected socket sends a reset. Closing it would not
    // do, as the HTTP library still owns the descriptor.
    sockaddr none{};
    none.sa_family = AF_UNSPEC;
    static_cast<void>(::connect(static_cast<int>(mSocket), &none, sizeof(none)));
}

bool Connection::peerGone() const {
    pollfd state{};
    state.fd = static_cast<int>(mSocket);
    state.events = POLLRDHUP;
    return ::poll(&state, 1, 0) > 0;
}

} // namespace vesk::backend
