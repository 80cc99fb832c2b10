#ifndef VESK_DEVKIT_BACKEND_SERVER_HTTPSERVER_H
#define VESK_DEVKIT_BACKEND_SERVER_HTTPSERVER_H

#include <future>
#include <memory>
#include <optional>
#include <string>

#include "httplib.h"

namespace vesk::backend {

/// An HTTP or HTTPS server on 127.0.0.1 with a thread of its own. Every connection carries one
/// request, so that tests see one connection a request and the end waits for no idle peer.
class HttpServer {
public:
    /// @param server plain or TLS
    explicit HttpServer(std::unique_ptr<httplib::Server> server);

    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// Where routes are set, before start().
    httplib::Server& routes() { return *mServer; }

    /// @param port 0 takes any free port
    /// @return whether the socket listens; connections wait until start().
    bool bind(int port);

    int port() const { return mPort; }

    /// Serves on a thread of its own; returns when that runs.
    void start();

    /// Takes no further request and lets those that are being answered finish for a moment.
    /// @return whether they have; if not, the process must end without a destructor.
    bool stop();

private:
    std::unique_ptr<httplib::Server> mServer;
    std::future<void> mEnd;
    socket_t mListener = INVALID_SOCKET;
    int mPort = 0;
};

/// The body of a request, byte for byte; nothing when it cannot be read.
std::optional<std::string> readBody(const httplib::Request& request,
                                    const httplib::ContentReader& reader);

constexpr const char* kJsonType = "application/json";

} // namespace vesk::backend

#endif
