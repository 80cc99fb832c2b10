#ifndef VESK_DEVKIT_BACKEND_SCANPAGE_SCANSESSION_H
#define VESK_DEVKIT_BACKEND_SCANPAGE_SCANSESSION_H

#include <array>
#include <chrono>
#include <string>
#include <vector>

namespace vesk::backend {

/// What the player with the telephone can do.
enum class ScanButton { Scanned, Confirm, Deny, Expire, KickOut, Fail };

/// A button, and how the control API calls it.
struct NamedButton {
    ScanButton button;
    const char* name;
};

constexpr std::array<NamedButton, 6> kScanButtons = {{
    {ScanButton::Scanned, "scanned"},
    {ScanButton::Confirm, "confirm"},
    {ScanButton::Deny, "deny"},
    {ScanButton::Expire, "expire"},
    {ScanButton::KickOut, "kickout"},
    {ScanButton::Fail, "fail"},
}};

/// A button that was pressed.
struct ScanWord {
    ScanButton button = ScanButton::Scanned;
    /// For Fail: what the messenger reports, never 0.
    int code = 0;
};

/// A QR code that waits for its player, and what that player has done. Its owner, a simulated
/// messenger or a script, asks for the words one after another.
class ScanSession {
public:
    using Clock = std::chrono::steady_clock;

    std::string id;
    std::string channel;
    /// Empty when nobody knows it.
    std::string seq;
    std::string qrCode;

    /// Whether there is still something to come: a confirmed session can be kicked out.
    bool isLive() const { return mState < State::Denied; }

    bool allows(ScanButton button) const;

    /// @return false when the button makes no sense now.
    bool press(const ScanWord& word);

    /// The owner has gone, a logout for example.
    void end();

    const std::vector<ScanWord>& words() const { return mWords; }

    /// The owner asks, and has got its answer. One that has not asked for a while is lost.
    void ownerAsks() { ++mAsking; }
    void ownerHasAsked();
    bool isLost() const;

    std::string toJson() const;

private:
    /// Those from Denied on are final.
    enum class State { Waiting, Scanned, Confirmed, Denied, Expired, KickedOut, Failed, Ended };

    const char* stateName() const;

    State mState = State::Waiting;
    std::vector<ScanWord> mWords;
    std::chrono::system_clock::time_point mCreated = std::chrono::system_clock::now();
    Clock::time_point mLastAsked = Clock::now();
    int mAsking = 0;
};

} // namespace vesk::backend

#endif
