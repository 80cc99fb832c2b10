#ifndef VESK_DEVKIT_BACKEND_SERVER_HTTPSERVER_H
#define VESK_DEVKIT_BACKEND_SERVER_HTTPSERVER_H

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "httplib.h"
#include "server/json.h"

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
    std::thread mThread;
    std::atomic<bool> mEnded{false};
    socket_t mListener = INVALID_SOCKET;
    int mPort = 0;
};

/// Reads the body of a request, byte for byte.
/// @return false when it cannot be read.
bool readBody(const httplib::Request& request, const httplib::ContentReader& reader,
              std::string& body);

constexpr const char* kJsonType = "application/json";

/// Answers {"error":"<what is wrong>"}.
void answerError(httplib::Response& response, int status, const std::string& error);

using JsonHandler =
    std::function<void(const httplib::Request&, const JsonMembers&, httplib::Response&)>;

/// Sets the route of a POST whose body must be a JSON object and say so in its content type: a form
/// on a page of another site cannot send that type.
void onPost(httplib::Server& server, const char* path, const JsonHandler& handler);

} // namespace vesk::backend

#endif
