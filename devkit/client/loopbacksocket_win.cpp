#include "client/loopbacksocket.h"

#include <winsock2.h>

namespace vesk::scanclient {

LoopbackSocket::LoopbackSocket() {
    WSADATA data;
    // Counted by the system: each start has its clean-up below.
    WSAStartup(MAKEWORD(2, 2), &data);
}

LoopbackSocket::~LoopbackSocket() {
    if (mSocket != kNone) {
        closesocket(mSocket);
    }
    WSACleanup();
}

bool LoopbackSocket::open(uint16_t port) {
    mSocket = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    u_long on = 1;
    if (mSocket == kNone || ioctlsocket(mSocket, FIONBIO, &on) != 0) {
        return false;
    }
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return connect(mSocket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 ||
           WSAGetLastError() == WSAEWOULDBLOCK;
}

LoopbackSocket::State LoopbackSocket::connected() {
    if (!isReady(true)) {
        return State::Waiting;
    }
    int error = 0;
    int size = sizeof(error);
    const int read =
        getsockopt(mSocket, SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &size);
    return read == 0 && error == 0 ? State::Ready : State::Failed;
}

bool LoopbackSocket::send(const std::string& text) {
    const int size = static_cast<int>(text.size());
    return ::send(mSocket, text.data(), size, 0) == size;
}

LoopbackSocket::State LoopbackSocket::receive(std::string& text) {
    if (!isReady(false)) {
        return State::Waiting;
    }
    char buffer[4096];
    const int size = recv(mSocket, buffer, sizeof(buffer), 0);
    if (size <= 0) {
        return State::Failed;
    }
    text.append(buffer, static_cast<size_t>(size));
    return State::Ready;
}

bool LoopbackSocket::isReady(bool forWriting) const {
    // Not FD_SET: its loop ends in a condition that some compilers warn of.
    fd_set sockets{};
    sockets.fd_count = 1;
    sockets.fd_array[0] = mSocket;
    // A connection that was refused shows up here, and is not writable.
    fd_set failed = sockets;
    timeval time{};
    time.tv_usec = static_cast<long>(std::chrono::microseconds(kSlice).count());
    return select(0, forWriting ? nullptr : &sockets, forWriting ? &sockets : nullptr, &failed,
                  &time) > 0;
}

} // namespace vesk::scanclient
