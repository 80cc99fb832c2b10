#include "player_desk.h"

#include "call_log.h"
#include "script.h"

namespace vesk::kzsim {
namespace {

/// The event that a button leads to; empty for none.
std::string stepOf(const scanclient::PlayerWord& word) {
    if (word.button == "scanned") {
        return "0:result:0:2";
    }
    if (word.button == "confirm") {
        return "0:result:0:3";
    }
    if (word.button == "deny") {
        return "0:result:1:5:1:denied at the console";
    }
    if (word.button == "expire") {
        return "0:result:1:4:1:expired at the console";
    }
    return word.button == "fail" ? "0:result:" + std::to_string(word.code) + ":6" : "";
}

} // namespace

std::unique_ptr<PlayerDesk> PlayerDesk::start(const std::string& controlUrl,
                                              const std::string& preCode,
                                              std::shared_ptr<EventThread> events) {
    std::unique_ptr<PlayerDesk> desk(new PlayerDesk(controlUrl, preCode, std::move(events)));
    desk->mHandle = CreateThread(nullptr, 0, &PlayerDesk::run, desk.get(), 0, nullptr);
    return desk->mHandle == nullptr ? nullptr : std::move(desk);
}

PlayerDesk::~PlayerDesk() {
    if (mHandle != nullptr) {
        mSession.stop();
        // The system signals a thread that has ended when it has left this library's code.
        WaitForSingleObject(mHandle, INFINITE);
        CloseHandle(mHandle);
    }
}

DWORD WINAPI PlayerDesk::run(void* desk) {
    static_cast<PlayerDesk*>(desk)->serve();
    return 0;
}

void PlayerDesk::serve() {
    const scanclient::PlayerScript script{"KZ", "0:info:1:", "0:result:1:6:1:no console",
                                          "0:result:1:6:1:the console has gone", stepOf};
    mSession.serve(script, mPreCode, [&](const std::string& steps) {
        if (steps == script.noBackend) {
            logProblem("interactive: the dev backend does not answer");
        }
        mEvents->play(readSteps(Settings(), "interactive", steps));
    });
}

} // namespace vesk::kzsim
