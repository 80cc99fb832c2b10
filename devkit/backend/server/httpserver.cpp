#include "server/httpserver.h"

#include <chrono>
#include <ctime>

#include "server/system.h"

namespace vesk::backend {

namespace {

constexpr const char* kHost = "127.0.0.1";
constexpr size_t kThreads = 32;
constexpr int kWaitingClients = 128;
constexpr auto kPollInterval = std::chrono::milliseconds(5);
constexpr auto kGraceTime = std::chrono::milliseconds(100);

/// The time as HTTP writes it.
std::string httpDate() {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    gmtime_r(&now, &utc);
    char text[64] = {};
    std::strftime(text, sizeof(text), "%a, %d %b %Y %H:%M:%S GMT", &utc);
    return text;
}

} // namespace

HttpServer::HttpServer(std::unique_ptr<httplib::Server> server) : mServer(std::move(server)) {
    mServer->new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
    mServer->set_keep_alive_max_count(1);
    mServer->set_tcp_nodelay(true);
    // As a real backend does: who asks can compare clocks.
    mServer->set_post_routing_handler([](const httplib::Request&, httplib::Response& response) {
        if (!response.has_header("Date")) {
            response.set_header("Date", httpDate());
        }
        response.set_header("Server", "vesk-devbackend"); // the doctor knows it by this
    });
    // The library's own options let two servers share a port without a word.
    mServer->set_socket_options([this](socket_t fd) {
        claimPort(static_cast<std::intptr_t>(fd));
        mListener = fd;
    });
}

bool HttpServer::bind(int port) {
    if (port == 0) {
        mPort = mServer->bind_to_any_port(kHost);
    } else {
        mPort = mServer->bind_to_port(kHost, port) ? port : -1;
    }
    // The library's backlog of 5 makes the clients of a burst wait a second for their retry.
    return mPort > 0 && ::listen(mListener, kWaitingClients) == 0;
}

void HttpServer::start() {
    mEnd = std::async(std::launch::async, [this] { mServer->listen_after_bind(); });
    // A stop before the loop runs would be lost.
    while (!mServer->is_running() && mEnd.wait_for(kPollInterval) != std::future_status::ready) {
    }
}

bool HttpServer::stop() {
    mServer->stop();
    return mEnd.wait_for(kGraceTime) == std::future_status::ready;
}

std::optional<std::string> readBody(const httplib::Request& request,
                                    const httplib::ContentReader& reader) {
    std::string body;
    // Without either header a request has no body; the library would wait for one.
    if (!request.has_header("Content-Length") && !request.has_header("Transfer-Encoding")) {
        return body;
    }
    // The library hands a multipart body out in parts only, not as it came.
    const bool isRead =
        !request.is_multipart_form_data() && reader([&body](const char* data, size_t size) {
            body.append(data, size);
            return true;
        });
    return isRead ? std::make_optional(body) : std::nullopt;
}

} // namespace vesk::backend
