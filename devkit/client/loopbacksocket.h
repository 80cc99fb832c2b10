#ifndef VESK_DEVKIT_CLIENT_LOOPBACKSOCKET_H
#define VESK_DEVKIT_CLIENT_LOOPBACKSOCKET_H

#include <chrono>
#include <cstdint>
#include <string>

namespace vesk::scanclient {

/// A connection to 127.0.0.1. No call takes longer than kSlice, so that whoever waits can look
/// around; nothing is thrown.
class LoopbackSocket {
public:
    static constexpr auto kSlice = std::chrono::milliseconds(50);
    enum class State { Ready, Waiting, Failed };

    LoopbackSocket();
    ~LoopbackSocket();
    LoopbackSocket(const LoopbackSocket&) = delete;
    LoopbackSocket& operator=(const LoopbackSocket&) = delete;

    /// Begins to connect.
    bool open(uint16_t port);

    /// Whether the connection is there by now; waits for one slice.
    State connected();

    /// A short text: it has to fit into the system's buffer.
    bool send(const std::string& text);

    /// Appends what has come; waits for one slice. Failed: the other side has closed, too.
    State receive(std::string& text);

private:
    /// Waits for one slice until the socket can be read from or written to.
    bool isReady(bool forWriting) const;

    // A descriptor, or a SOCKET: wide enough for either.
    static constexpr uintptr_t kNone = ~static_cast<uintptr_t>(0);
    uintptr_t mSocket = kNone;
};

} // namespace vesk::scanclient

#endif
