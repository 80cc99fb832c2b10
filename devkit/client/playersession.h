#ifndef VESK_DEVKIT_CLIENT_PLAYERSESSION_H
#define VESK_DEVKIT_CLIENT_PLAYERSESSION_H

#include <atomic>
#include <functional>
#include <map>
#include <string>

namespace vesk::scanclient {

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

/// Registers a QR code with the dev backend and asks for the player's words. It serves on
/// a thread that is the owner's business: this class starts none.
class PlayerSession {
public:
    /// @param controlUrl as the backend's ready line gives it; another machine is never asked
    explicit PlayerSession(const std::string& controlUrl);
    ~PlayerSession();
    PlayerSession(const PlayerSession&) = delete;
    PlayerSession& operator=(const PlayerSession&) = delete;

    /// Takes steps, on the thread that serves.
    using Play = std::function<void(const std::string& steps)>;

    /// Shows a code to the player and plays what he does, until the session is over or stop().
    void serve(const PlayerScript& script, const std::string& preCode, const Play& play);

    /// From another thread: ends the request that is under way; no other is made but the farewell.
    void stop();

private:
    /// The members of a good answer; none without one.
    using Members = std::map<std::string, std::string>;
    /// None, too, as soon as somebody has called stop().
    Members ask(const std::string& path, const char* json, long patienceMs);
    /// @param json null: a GET
    Members transfer(const std::string& path, const char* json, long patienceMs, bool canBeStopped);

    const std::string mAddress;
    void* mTransfers; // libcurl's, which stop() wakes; no other thread touches the rest of it
    std::atomic<bool> mStopped{false};
};

} // namespace vesk::scanclient

#endif
