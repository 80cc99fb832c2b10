#ifndef VESK_DEVKIT_SIMULATORS_COMMON_PLAYERDESK_H
#define VESK_DEVKIT_SIMULATORS_COMMON_PLAYERDESK_H

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>

#include "common/text.h"

namespace vesk::simulator {

/// What a messenger's component does at the player's words, in the step language of its settings
/// file.
struct PlayerScript {
    std::string channel;
    /// Shows the code, the address of whose picture follows.
    std::string showCode;
    /// There is no backend to ask.
    std::string noBackend;
    /// Nobody can decide any more: the session has ended, or the backend.
    std::string backendGone;
    /// The steps that the buttons "scanned", "confirm", "deny", "expire", "kickout" and "fail" lead
    /// to, with a star in the place of a code.
    std::map<std::string, std::string> steps;
};

/// A player at the dev backend's scan page. A thread of its own registers a QR code there, shows it
/// to him and turns what he does into the component's steps; it calls nothing of the host itself,
/// so that it can be waited for from anywhere.
class PlayerDesk {
public:
    using Play = std::function<void(const std::string& steps)>;

    /// @param controlUrl as the backend's ready line gives it; another machine is never asked
    /// @param play takes steps as the settings file has them. Called on the desk's thread.
    PlayerDesk(const std::string& controlUrl, const std::string& preCode, PlayerScript script,
               Play play);
    /// Ends the session and the thread, within about a quarter of a second.
    ~PlayerDesk();
    PlayerDesk(const PlayerDesk&) = delete;
    PlayerDesk& operator=(const PlayerDesk&) = delete;

private:
    void serve(const std::string& preCode);
    /// The members of a good answer; none without one, and as soon as the desk closes. The farewell
    /// is said all the same.
    devkit::JsonMembers ask(const std::string& path, const char* json, long patienceMs,
                            bool isFarewell = false);

    const std::string mAddress;
    const PlayerScript mScript;
    const Play mPlay;
    // libcurl's, which the closing wakes; the rest of it is the thread's.
    const std::shared_ptr<void> mTransfers;
    std::atomic<bool> mCloses{false};
    std::thread mThread;
};

} // namespace vesk::simulator

#endif
