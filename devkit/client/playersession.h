#ifndef VESK_DEVKIT_CLIENT_PLAYERSESSION_H
#define VESK_DEVKIT_CLIENT_PLAYERSESSION_H

#include <atomic>
#include <functional>
#include <optional>
#include <string>

#include "client/controlclient.h"

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

/// What a messenger's component does at the player's words, in the step language of its settings
/// file.
struct PlayerScript {
    std::string channel;
    /// Shows the code, whose text follows.
    std::string showCode;
    /// There is no backend to ask.
    std::string noConsole;
    /// Nobody can decide any more: the session has ended, or the backend.
    std::string consoleGone;
    /// The step that a button leads to; empty for none.
    std::string (*stepOf)(const PlayerWord& word);
};

/// Registers a QR code with the dev backend and asks for the player's words. It serves on
/// a thread that is the owner's business: this class starts none.
class PlayerSession {
public:
    explicit PlayerSession(const std::string& controlUrl) : mClient(controlUrl) {}

    /// Takes steps, on the thread that serves.
    using Play = std::function<void(const std::string& steps)>;

    /// Shows a code to the player and plays what he does, until the session is over. Returns soon
    /// after stop(), whatever the backend does.
    void serve(const PlayerScript& script, const std::string& preCode, const Play& play);

    /// From another thread: what is under way returns within a slice of LoopbackSocket.
    void stop() { mStopped = true; }

private:
    /// @return the QR code's text; nothing when the backend does not answer.
    std::optional<std::string> begin(const std::string& channel, const std::string& preCode);

    /// Waits for the next word, two seconds or so.
    /// @return nothing when the backend does not answer any more, or after stop().
    std::optional<PlayerWord> next();

    /// Tells the backend that nobody waits any more.
    void end();

    const ControlClient mClient;
    std::atomic<bool> mStopped{false};
    std::string mId;
    unsigned mWords = 0;
};

} // namespace vesk::scanclient

#endif
