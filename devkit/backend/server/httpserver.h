#ifndef VESK_DEVKIT_BACKEND_SERVER_HTTPSERVER_H
#define VESK_DEVKIT_BACKEND_SERVER_HTTPSERVER_H

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "httplib.h"

namespace vesk::backend {

/// An HTTP or HTTPS server on 127.0.0.1 with a thread of its own. Every connection carries one
/// request, so that tests see one connection a request and the end waits for no idle peer.
class HttpServer {
public:
    /// @param server plain or TLS
    explicit HttpServer(std::unique_ptr<httplib::Server> server);
    ~HttpServer();

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

    /// Lets requests that are being answered finish for a moment, then closes what is left.
    void stop();

private:
    std::unique_ptr<httplib::Server> mServer;
    std::thread mThread;
    std::atomic<bool> mEnded{false};
    socket_t mListener = INVALID_SOCKET;
    int mPort = 0;
};

/// Reads the body of a request, byte for byte.
/// @return false when it cannot be read.
bool readBody(const httplib::Request& request, const httplib::ContentReader& reader,
              std::string& body);

} // namespace vesk::backend

#endif
