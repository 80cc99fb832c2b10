#ifndef VESK_TESTS_UNIT_FOUNDATION_HTTP_LOOPBACKSERVER_H
#define VESK_TESTS_UNIT_FOUNDATION_HTTP_LOOPBACKSERVER_H

#include <cstdint>
#include <stdexcept>
#include <string>

namespace vesk::test {

/// A port of the loopback address. Connections are made but wait until somebody answers them.
class LoopbackServer {
public:
    LoopbackServer();
    ~LoopbackServer() { close(); }
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    std::string url() const { return "http://127.0.0.1:" + std::to_string(mPort) + "/path?query"; }

    /// Waits for one request, a short one, and sends @p answer, word for word.
    /// @return the request.
    std::string answer(const std::string& answer) const;

    /// Resets the connections that wait and refuses further ones.
    void close();

private:
    static void check(bool good) { good ? void() : throw std::runtime_error("loopback failed"); }

    int mSocket = -1;
    uint16_t mPort = 0;
};

} // namespace vesk::test

#endif
