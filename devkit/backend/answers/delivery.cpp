#include <algorithm>
#include <chrono>
#include <optional>

#include "answers/scriptedanswer.h"
#include "server/httpserver.h"
#include "server/system.h"

namespace vesk::backend {

namespace {

using std::chrono::milliseconds;

constexpr auto kHangPoll = milliseconds(20);
// Descriptors and handles are small: the lowest free one is taken.
constexpr socket_t kLastSocket = 0x2000;
constexpr int kBothSides = 2;

/// The port of one end of a connected socket, 0 when there is none, or it is no socket.
int portOf(socket_t socket, decltype(&::getsockname) query) {
    sockaddr_in address{};
    socklen_t size = sizeof(address);
    if (query(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
        address.sin_family != AF_INET) {
        return 0;
    }
    return ntohs(address.sin_port);
}

/// The HTTP library hands out no socket, so it is looked up by its ports. It stays open for as long
/// as the handler of its request runs.
std::optional<socket_t> connectionOf(const httplib::Request& request) {
    for (socket_t socket = 0; socket <= kLastSocket; ++socket) {
        if (portOf(socket, ::getsockname) == request.local_port &&
            portOf(socket, ::getpeername) == request.remote_port) {
            return socket;
        }
    }
    return std::nullopt;
}

/// The peer sees a TCP reset at once, with or without TLS; an orderly end unless canReset().
void reset(socket_t connection) {
    // Linux: dissolving the association of a connected socket sends a reset. Closing it would not
    // do, as the HTTP library still owns the descriptor.
    sockaddr none{};
    none.sa_family = AF_UNSPEC;
    static_cast<void>(::connect(connection, &none, sizeof(none)));
    ::shutdown(connection, kBothSides);
}

/// What goes over the connection, in the end.
struct Body {
    std::string bytes;
    int copies = 1;
    milliseconds drip{0};
    WaitingRoom& waitingRoom;

    /// @return whether the client has taken all of it.
    bool send(httplib::DataSink& sink) const {
        bool taken = true;
        for (int i = 0; taken && i < copies; ++i) {
            taken = sink.is_writable() &&
                    (drip.count() > 0 ? sendSlowly(sink) : sink.write(bytes.data(), bytes.size()));
        }
        return taken;
    }

    bool sendSlowly(httplib::DataSink& sink) const {
        return std::all_of(bytes.begin(), bytes.end(), [&](const char& byte) {
            return sink.write(&byte, 1) && !waitingRoom.waitFor(drip) && sink.is_writable();
        });
    }
};

void sendBody(const ScriptedAnswer& script, const std::string& bytes, WaitingRoom& waitingRoom,
              httplib::Response& response) {
    const bool cut = script.action == Action::Cut;
    if (!cut && script.repeat == 1 && script.dripMs == 0 && script.announce == 0) {
        response.set_content(bytes, kJsonType);
        return;
    }
    Body body{bytes, script.repeat, milliseconds(script.dripMs), waitingRoom};
    size_t announced = bytes.size();
    if (cut) {
        // Of nothing, something is missing as well.
        announced = std::max<size_t>(announced, 2);
        const size_t half = bytes.size() / 2;
        body.bytes.resize(
            std::min(bytes.size(), script.cutAt < 0 ? half : static_cast<size_t>(script.cutAt)));
    }
    if (script.announce > 0) {
        announced = static_cast<size_t>(script.announce);
    } else if (script.repeat > 1 || announced == 0) {
        response.set_chunked_content_provider(kJsonType, [body](size_t, httplib::DataSink& sink) {
            const bool whole = body.send(sink);
            sink.done();
            return whole;
        });
        return;
    }
    // The library closes the connection when the provider gives up, so this one is called once.
    response.set_content_provider(announced, kJsonType,
                                  [body](size_t, size_t, httplib::DataSink& sink) {
                                      body.send(sink);
                                      return false;
                                  });
}

} // namespace

void deliver(const ScriptedAnswer& script, const Answer& answer, WaitingRoom& waitingRoom,
             const httplib::Request& request, httplib::Response& response) {
    waitingRoom.waitFor(milliseconds(script.delayMs));
    response.status = answer.status;
    if (!script.location.empty()) {
        response.set_header("Location", script.location);
    }
    if (script.action != Action::Hang && script.action != Action::Reset) {
        sendBody(script, answer.body, waitingRoom, response);
        return;
    }
    // The library answers in any case; without a connection nobody hears it.
    response.status = 500;
    const auto connection = connectionOf(request);
    if (!connection) {
        return;
    }
    // Something arrives when the peer has closed its side: no other request comes.
    while (script.action == Action::Hang && !hasArrived(static_cast<std::intptr_t>(*connection)) &&
           !waitingRoom.waitFor(kHangPoll)) {
    }
    reset(*connection);
}

} // namespace vesk::backend
