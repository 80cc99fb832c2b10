#ifndef VESK_DEVKIT_BACKEND_SCANPAGE_SCANSESSION_H
#define VESK_DEVKIT_BACKEND_SCANPAGE_SCANSESSION_H

#include <array>
#include <chrono>
#include <string>
#include <vector>

namespace vesk::backend {

/// What the player with the telephone can do, by the names that the control API has for it.
constexpr std::array<const char*, 6> kScanButtons = {"scanned", "confirm", "deny",
                                                     "expire",  "kickout", "fail"};

/// A button that was pressed.
struct ScanWord {
    /// Empty: none was.
    std::string button;
    /// For "fail": what the messenger reports, never 0.
    int code = 0;

    /// @param over nothing will come any more
    std::string toJson(bool over) const;
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

    /// Live, but its owner has not asked for a while.
    bool isLost() const;

    /// @return false when the button makes no sense now.
    bool press(const ScanWord& word);

    /// The owner has gone, a logout for example.
    void end();

    /// The owner asks for the word with that index, and has got its answer.
    void ownerAsks() { ++mAsking; }
    bool hasAnswer(size_t index) const { return mWords.size() > index || !isLive(); }
    /// @return the answer
    std::string ownerHasAsked(size_t index);

    std::string toJson() const;

private:
    /// After the first one in the order of the buttons that lead there. Those from Denied on are
    /// final.
    enum class State { Waiting, Scanned, Confirmed, Denied, Expired, KickedOut, Failed, Ended };

    bool allows(State next) const;

    State mState = State::Waiting;
    std::vector<ScanWord> mWords;
    std::chrono::system_clock::time_point mCreated = std::chrono::system_clock::now();
    Clock::time_point mLastAsked = Clock::now();
    int mAsking = 0;
};

} // namespace vesk::backend

#endif
