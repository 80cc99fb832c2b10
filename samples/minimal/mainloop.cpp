#include <chrono>
#include <cstdio>
#include <thread>

#include "vesk/vesk.hpp"

void drawFrame(const vesk::State& /*state*/) { // your game, and state.stage in words
    std::this_thread::sleep_for(std::chrono::milliseconds(16));
}

int main() {
    bool playing = true;
    {
        vesk::MainLoop loop;
        loop.setLoginTimeout(std::chrono::minutes(2));
        vesk::login("Steam"); // the player has pressed "Play"; "Back": loop.cancelLogin()
        while (playing && loop.isOn()) {
            loop.poll(vesk::Overloaded{
                [&](const vesk::LoginRet& ret, uint64_t) { // between two frames, on your own thread
                    std::fprintf(stderr, "login: %d %s\n", ret.retCode, ret.retMsg.c_str());
                    playing = ret.retCode == VESK_SUCCESS;
                    vesk::logout(); // here the visit is over; you enter the lobby with ret.openid
                },
                [](const vesk::QrCodeRet&, uint64_t) {}, // messengers only: show ret.qrCodeUrl
                [](const vesk::Refreshed&, uint64_t) {}, // a new token, or 1002: a new login
                [&](const vesk::BaseRet& ret, uint64_t) {
                    std::fprintf(stderr, "logged out: %d\n", ret.retCode);
                    playing = false;
                },
            });
            drawFrame(loop.state());
        }
        loop.waitIdle(std::chrono::seconds(3)); // the logout reaches the backend
    }
    vesk::uninstall();
}
