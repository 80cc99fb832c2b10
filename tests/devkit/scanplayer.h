#ifndef VESK_TESTS_DEVKIT_SCANPLAYER_H
#define VESK_TESTS_DEVKIT_SCANPLAYER_H

#include <string>
#include <vector>

#include "support/backendcontrol.h"

namespace vesk::test {

/// A QR code as the control API lists it.
struct Session {
    std::string id;
    std::string channel;
    std::string seq;
    std::string qrCode;
    std::string state;
    bool live = false;
    std::vector<std::string> buttons;
};

/// The player at the scan page, as a script plays him.
class ScanPlayer {
public:
    explicit ScanPlayer(std::string url) : mUrl(std::move(url)) {}

    /// @param headers further ones, as "Name: value"
    ControlAnswer get(const std::string& path, const std::vector<std::string>& headers = {}) const;
    /// As JSON, unless the headers name another content type.
    ControlAnswer post(const std::string& path, const std::string& json,
                       const std::vector<std::string>& headers = {}) const;

    std::vector<Session> sessions() const;
    /// Waits until there are @p count sessions and returns the last one.
    Session waitForSession(size_t count = 1) const;
    /// Waits until the session is in this state.
    void waitForState(const std::string& id, const std::string& state) const;

    /// Registers a session; returns its id.
    std::string begin(const std::string& channel, const std::string& more = "") const;
    /// Presses a button; returns the HTTP status. @param more further members, with a comma
    long press(const std::string& id, const std::string& button,
               const std::string& more = "") const;

    const std::string& url() const { return mUrl; }

private:
    std::string mUrl;
};

} // namespace vesk::test

#endif
