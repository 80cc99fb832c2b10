#ifndef VESK_SIMULATORS_FERNO_PLAYER_DESK_H
#define VESK_SIMULATORS_FERNO_PLAYER_DESK_H

#include <memory>
#include <string>
#include <thread>

#include "client/playersession.h"

namespace vesk::fernosim {

/// A player at the dev backend's scan console. A thread of its own shows him a QR code and turns
/// what he does into the component's steps; it calls nothing of the host itself, so that it can be
/// waited for from anywhere.
class PlayerDesk {
public:
    /// Takes steps as ferno_sim.ini has them. Called on the desk's thread.
    using Play = scanclient::PlayerSession::Play;

    PlayerDesk(const std::string& controlUrl, const std::string& preCode, Play play);
    /// Ends the session and the thread, within about a quarter of a second.
    ~PlayerDesk();

private:
    scanclient::PlayerSession mSession;
    std::thread mThread;
};

} // namespace vesk::fernosim

#endif
