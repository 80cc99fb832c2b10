#include "scanpage/scansession.h"

#include <algorithm>

#include "server/json.h"

namespace vesk::backend {

namespace {

// The simulated messengers ask four times a second when nothing happens.
constexpr auto kLostAfter = std::chrono::seconds(6);

constexpr const char* kStateNames[] = {"waiting", "scanned",    "confirmed", "denied",
                                       "expired", "kicked out", "failed",    "ended"};

} // namespace

std::string ScanWord::toJson(bool over) const {
    return JsonLine().add("button", button).add("code", code).add("over", over).text();
}

bool ScanSession::isLost() const {
    return isLive() && mAsking == 0 && Clock::now() - mLastAsked > kLostAfter;
}

bool ScanSession::allows(State next) const {
    if (!isLive() || (next == State::KickedOut && channel != "Ferno")) {
        return false; // the KZ component has no event for a kick-out
    }
    if (mState == State::Confirmed) {
        return next == State::KickedOut;
    }
    return next != State::Scanned || mState == State::Waiting;
}

bool ScanSession::press(const ScanWord& word) {
    const auto button = std::find(kScanButtons.begin(), kScanButtons.end(), word.button);
    const auto next = static_cast<State>(button - kScanButtons.begin() + 1);
    if (!allows(next)) {
        return false;
    }
    mWords.push_back(word);
    mState = next;
    return true;
}

void ScanSession::end() {
    // What the player has decided stays to be seen.
    if (isLive()) {
        mState = State::Ended;
    }
}

std::string ScanSession::ownerHasAsked(size_t index) {
    --mAsking;
    mLastAsked = Clock::now();
    const ScanWord word = mWords.size() > index ? mWords[index] : ScanWord();
    return word.toJson(!isLive() && mWords.size() <= index + 1);
}

std::string ScanSession::toJson() const {
    std::string buttons = "[";
    for (size_t i = 0; i < kScanButtons.size(); ++i) {
        if (allows(static_cast<State>(i + 1))) {
            appendElement(buttons, '"' + std::string(kScanButtons[i]) + '"');
        }
    }
    const auto created =
        std::chrono::duration_cast<std::chrono::milliseconds>(mCreated.time_since_epoch());
    return JsonLine()
        .add("id", id)
        .add("channel", channel)
        .add("seq", seq)
        .add("qrcode", qrCode)
        .add("created_ms", created.count())
        .add("state", isLost() ? "lost" : kStateNames[static_cast<size_t>(mState)])
        .add("live", isLive() && !isLost())
        .addRaw("buttons", buttons + "]")
        .text();
}

} // namespace vesk::backend
