#include "scanpage/scansession.h"

#include "server/json.h"

namespace vesk::backend {

namespace {

// The simulated messengers ask four times a second when nothing happens.
constexpr auto kLostAfter = std::chrono::seconds(6);

} // namespace

bool ScanSession::allows(ScanButton button) const {
    if (!isLive() || (button == ScanButton::KickOut && channel != "Ferno")) {
        return false; // the KZ component has no event for a kick-out
    }
    if (mState == State::Confirmed) {
        return button == ScanButton::KickOut;
    }
    return button != ScanButton::Scanned || mState == State::Waiting;
}

bool ScanSession::press(const ScanWord& word) {
    if (!allows(word.button)) {
        return false;
    }
    mWords.push_back(word);
    switch (word.button) {
    case ScanButton::Scanned:
        mState = State::Scanned;
        break;
    case ScanButton::Confirm:
        mState = State::Confirmed;
        break;
    case ScanButton::Deny:
        mState = State::Denied;
        break;
    case ScanButton::Expire:
        mState = State::Expired;
        break;
    case ScanButton::KickOut:
        mState = State::KickedOut;
        break;
    case ScanButton::Fail:
        mState = State::Failed;
        break;
    }
    return true;
}

void ScanSession::end() {
    // What the player has decided stays to be seen.
    if (isLive()) {
        mState = State::Ended;
    }
}

void ScanSession::ownerHasAsked() {
    --mAsking;
    mLastAsked = Clock::now();
}

bool ScanSession::isLost() const {
    return isLive() && mAsking == 0 && Clock::now() - mLastAsked > kLostAfter;
}

std::string ScanSession::toJson() const {
    std::string buttons = "[";
    for (const NamedButton& named : kScanButtons) {
        if (allows(named.button)) {
            appendElement(buttons, '"' + std::string(named.name) + '"');
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
        .add("state", stateName())
        .add("live", isLive() && !isLost())
        .addRaw("buttons", buttons + "]")
        .text();
}

const char* ScanSession::stateName() const {
    if (isLost()) {
        return "lost";
    }
    switch (mState) {
    case State::Waiting:
        return "waiting";
    case State::Scanned:
        return "scanned";
    case State::Confirmed:
        return "confirmed";
    case State::Denied:
        return "denied";
    case State::Expired:
        return "expired";
    case State::KickedOut:
        return "kicked out";
    case State::Failed:
        return "failed";
    case State::Ended:
        break;
    }
    return "ended";
}

} // namespace vesk::backend
