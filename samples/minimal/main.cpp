#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>

#include "vesk/vesklogin.h"
using namespace Braxel::VESK;

std::atomic<bool> answered{false};

struct Observer final : VESKLoginObserver { // called on the SDK's threads: copy, return soon
    void OnLoginRetNotify(const VESKLoginRet& ret) override {
        std::fprintf(stderr, "login: %d %s, thirdCode %d %s\n", ret.retCode, ret.retMsg.c_str(),
                     ret.thirdCode, ret.thirdMsg.c_str());
        answered = true;
    }
    void OnBaseRetNotify(const VESKBaseRet&) override {}     // a logout ended
    void OnQrCodeRetNotify(const VESKQrCodeRet&) override {} // show a code; messengers only
};

int main() {
    static Observer* const observer = new Observer; // must outlive its registration
    VESKLogin::SetLoginObserver(observer);
    VESKLogin::Login("Steam", "", "", "");
    for (int frame = 0; !answered && frame < 60 * 60; ++frame) { // your game
        std::this_thread::sleep_for(std::chrono::milliseconds(16));
    }
    VESKLogin::SetLoginObserver(nullptr);
    VESKLogin::UnInstall();
}
