#ifndef VESK_DEVKIT_CLIENT_CONTROLCLIENT_H
#define VESK_DEVKIT_CLIENT_CONTROLCLIENT_H

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace vesk::scanclient {

/// Plain HTTP to 127.0.0.1, one connection a request. Every request has a deadline and can be given
/// up from another thread.
class ControlClient {
public:
    /// @param url as the backend's ready line gives it, "http://127.0.0.1:<port>"
    explicit ControlClient(const std::string& url);

    /// The body of an answer with status 200; nothing when there is none in time.
    /// @param stop nullptr: only the deadline ends it
    std::optional<std::string> get(const std::string& path, std::chrono::milliseconds time,
                                   const std::atomic<bool>* stop) const;
    std::optional<std::string> post(const std::string& path, const std::string& json,
                                    std::chrono::milliseconds time,
                                    const std::atomic<bool>* stop) const;

private:
    std::optional<std::string> exchange(const std::string& request, std::chrono::milliseconds time,
                                        const std::atomic<bool>* stop) const;

    std::string mHost;
    uint16_t mPort = 0;
};

} // namespace vesk::scanclient

#endif
