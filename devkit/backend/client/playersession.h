/// @file
/// A simulated messenger's side of a QR code.
#ifndef VESK_DEVKIT_BACKEND_CLIENT_PLAYERSESSION_H
#define VESK_DEVKIT_BACKEND_CLIENT_PLAYERSESSION_H

#include "controlclient.h"

#include <atomic>
#include <optional>
#include <string>

namespace vesk::scanclient {

/// What the player at the console has done.
struct PlayerWord {
    /// "scanned", "confirm", "deny", "expire", "kickout" or "fail"; empty: nothing yet.
    std::string button;
    /// For "fail".
    int code = 0;
    /// Nothing will come any more.
    bool over = false;
};

/// Registers a QR code with the dev backend and asks for the player's words. All calls but stop()
/// belong to one thread, which is the owner's business: this class starts none.
class PlayerSession {
public:
    explicit PlayerSession(const std::string& controlUrl) : mClient(controlUrl) {}

    /// @return the QR code's text; nothing when the backend does not answer.
    std::optional<std::string> begin(const std::string& channel, const std::string& preCode);

    /// Waits for the next word, two seconds or so.
    /// @return nothing when the backend does not answer any more, or after stop().
    std::optional<PlayerWord> next();

    /// Tells the backend that nobody waits any more. Short, whatever the backend does.
    void end();

    /// From another thread: what is under way returns within a slice of LoopbackSocket.
    void stop() { mStopped = true; }
    bool isStopped() const { return mStopped; }

private:
    const ControlClient mClient;
    std::atomic<bool> mStopped{false};
    std::string mId;
    unsigned mWords = 0;
};

} // namespace vesk::scanclient

#endif // VESK_DEVKIT_BACKEND_CLIENT_PLAYERSESSION_H
