#include "player_desk.h"

namespace vesk::fernosim {

namespace {

/// The callback that a button leads to; empty for none.
std::string stepOf(const scanclient::PlayerWord& word) {
    if (word.button == "scanned") {
        return "0:scanned";
    }
    if (word.button == "confirm") {
        return "0:success";
    }
    if (word.button == "deny") {
        return "0:fail:10009:0";
    }
    if (word.button == "expire") {
        return "0:fail:10010:0";
    }
    if (word.button == "kickout") {
        return "0:kickout:1";
    }
    return word.button == "fail" ? "0:fail:1:" + std::to_string(word.code) : "";
}

} // namespace

PlayerDesk::PlayerDesk(const std::string& controlUrl, const std::string& preCode, Play play)
    : mSession(controlUrl),
      mThread([this, preCode, play = std::move(play)] { run(mSession, preCode, play); }) {}

PlayerDesk::~PlayerDesk() {
    mSession.stop();
    mThread.join();
}

void PlayerDesk::run(scanclient::PlayerSession& session, const std::string& preCode,
                     const Play& play) {
    const auto qrCode = session.begin("Ferno", preCode);
    if (!qrCode) {
        play("0:qr_fail:1:1");
        return;
    }
    play("0:qr:" + *qrCode);
    // A confirmed player can still be kicked out, so only a failure counts before that.
    bool isDecided = false;
    auto word = session.next();
    while (word) {
        const std::string step = stepOf(*word);
        if (!step.empty()) {
            isDecided = isDecided || word->button != "scanned";
            play(step);
        }
        if (word->over) {
            break;
        }
        word = session.next();
    }
    if (!isDecided && !session.isStopped()) {
        // Nobody can decide any more: the session has ended, or the backend.
        play("0:fail:1:1");
    }
    session.end();
}

} // namespace vesk::fernosim
