#include "client/controlclient.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "client/loopbacksocket.h"

namespace vesk::scanclient {

namespace {

/// Nothing when the answer is not there as a whole, or no success.
std::optional<std::string> bodyOf(const std::string& answer) {
    const size_t end = answer.find("\r\n\r\n");
    const std::string good = "HTTP/1.1 200 ";
    if (end == std::string::npos || answer.compare(0, good.size(), good) != 0) {
        return std::nullopt;
    }
    const std::string lengthName = "\r\nContent-Length: ";
    const size_t length = answer.find(lengthName);
    const std::string body = answer.substr(end + 4);
    if (length >= end ||
        std::strtoul(answer.c_str() + length + lengthName.size(), nullptr, 10) != body.size()) {
        return std::nullopt;
    }
    return body;
}

} // namespace

ControlClient::ControlClient(const std::string& url) {
    const std::string scheme = "http://";
    const bool hasScheme =
        url.size() >= scheme.size() &&
        std::equal(scheme.begin(), scheme.end(), url.begin(), [](char expected, char c) {
            return expected == std::tolower(static_cast<unsigned char>(c));
        });
    const size_t begin = hasScheme ? scheme.size() : 0;
    mHost = url.substr(begin, url.find('/', begin) - begin);
    const size_t colon = mHost.find(':');
    const std::string name = mHost.substr(0, colon);
    // The name is not looked up: whatever else it says, it is not this machine.
    if (colon != std::string::npos && (name == "127.0.0.1" || name == "localhost")) {
        mPort = static_cast<uint16_t>(std::strtoul(mHost.c_str() + colon + 1, nullptr, 10));
    }
}

std::optional<std::string> ControlClient::get(const std::string& path,
                                              std::chrono::milliseconds time,
                                              const std::atomic<bool>* stop) const {
    return exchange("GET " + path + " HTTP/1.1\r\nHost: " + mHost + "\r\nConnection: close\r\n\r\n",
                    time, stop);
}

std::optional<std::string> ControlClient::post(const std::string& path, const std::string& json,
                                               std::chrono::milliseconds time,
                                               const std::atomic<bool>* stop) const {
    return exchange("POST " + path + " HTTP/1.1\r\nHost: " + mHost +
                        "\r\nConnection: close\r\nContent-Type: application/json\r\n"
                        "Content-Length: " +
                        std::to_string(json.size()) + "\r\n\r\n" + json,
                    time, stop);
}

std::optional<std::string> ControlClient::exchange(const std::string& request,
                                                   std::chrono::milliseconds time,
                                                   const std::atomic<bool>* stop) const {
    const auto deadline = std::chrono::steady_clock::now() + time;
    const auto goesOn = [&] {
        return std::chrono::steady_clock::now() < deadline && (stop == nullptr || !*stop);
    };
    LoopbackSocket socket;
    if (mPort == 0 || !socket.open(mPort)) {
        return std::nullopt;
    }
    auto state = LoopbackSocket::State::Waiting;
    while (state == LoopbackSocket::State::Waiting && goesOn()) {
        state = socket.connected();
    }
    if (state != LoopbackSocket::State::Ready || !socket.send(request)) {
        return std::nullopt;
    }
    std::string answer;
    while (goesOn()) {
        if (socket.receive(answer) == LoopbackSocket::State::Failed) {
            return bodyOf(answer);
        }
    }
    return std::nullopt;
}

} // namespace vesk::scanclient
