#ifndef VESK_DEVKIT_SIMULATORS_COMMON_PLAYERDESK_H
#define VESK_DEVKIT_SIMULATORS_COMMON_PLAYERDESK_H

#include <string>
#include <thread>
#include <utility>

#include "client/playersession.h"

namespace vesk::simulator {

/// A player at the dev backend's scan page. A thread of its own shows him a QR code and turns what
/// he does into the component's steps; it calls nothing of the host itself, so that it can be
/// waited for from anywhere.
class PlayerDesk {
public:
    /// @param play takes steps as the settings file has them. Called on the desk's thread.
    PlayerDesk(const std::string& controlUrl, const std::string& preCode,
               scanclient::PlayerScript script, scanclient::PlayerSession::Play play)
        : mSession(controlUrl),
          mThread([this, preCode, script = std::move(script), play = std::move(play)] {
              mSession.serve(script, preCode, play);
          }) {}

    /// Ends the session and the thread, within about a quarter of a second.
    ~PlayerDesk() {
        mSession.stop();
        mThread.join();
    }

private:
    scanclient::PlayerSession mSession;
    std::thread mThread;
};

} // namespace vesk::simulator

#endif
