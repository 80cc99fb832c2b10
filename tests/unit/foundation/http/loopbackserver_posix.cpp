#include "unit/foundation/http/loopbackserver.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace vesk::test {

LoopbackServer::LoopbackServer() : mSocket(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address = {};
    socklen_t size = sizeof address;
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* name = reinterpret_cast<sockaddr*>(&address);
    check(::bind(mSocket, name, size) == 0 && ::listen(mSocket, 64) == 0 &&
          ::getsockname(mSocket, name, &size) == 0);
    mPort = ntohs(address.sin_port);
}

std::string LoopbackServer::answer(const std::string& answer) const {
    const int connection = ::accept(mSocket, nullptr, nullptr);
    char request[4096];
    const auto length = ::recv(connection, request, sizeof request, 0);
    check(length > 0 && ::send(connection, answer.data(), answer.size(), MSG_NOSIGNAL) > 0);
    ::close(connection);
    return {request, static_cast<size_t>(length)};
}

void LoopbackServer::close() {
    if (mSocket != -1) {
        ::close(mSocket);
        mSocket = -1;
    }
}

} // namespace vesk::test
