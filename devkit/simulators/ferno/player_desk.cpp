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
    : mSession(controlUrl), mThread([this, preCode, play = std::move(play)] {
          mSession.serve({"Ferno", "0:qr:", "0:qr_fail:1:1", "0:fail:1:1", stepOf}, preCode, play);
      }) {}

PlayerDesk::~PlayerDesk() {
    mSession.stop();
    mThread.join();
}

} // namespace vesk::fernosim
