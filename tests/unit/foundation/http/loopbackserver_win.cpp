#include "unit/foundation/http/loopbackserver.h"

#include <winsock2.h>

namespace vesk::test {

LoopbackServer::LoopbackServer() {
    WSADATA data;
    check(::WSAStartup(MAKEWORD(2, 2), &data) == 0);
    const SOCKET listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    int size = sizeof address;
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* name = reinterpret_cast<sockaddr*>(&address);
    check(::bind(listener, name, size) == 0 && ::listen(listener, 64) == 0 &&
          ::getsockname(listener, name, &size) == 0);
    mSocket = static_cast<int>(listener);
    mPort = ntohs(address.sin_port);
}

std::string LoopbackServer::answer(const std::string& answer) const {
    const SOCKET connection = ::accept(static_cast<SOCKET>(mSocket), nullptr, nullptr);
    char request[4096];
    const int length = ::recv(connection, request, sizeof request, 0);
    check(length > 0 && ::send(connection, answer.data(), static_cast<int>(answer.size()), 0) > 0);
    ::closesocket(connection);
    return {request, static_cast<size_t>(length)};
}

void LoopbackServer::close() {
    if (mSocket != -1) {
        ::closesocket(static_cast<SOCKET>(mSocket));
        mSocket = -1;
    }
}

} // namespace vesk::test
