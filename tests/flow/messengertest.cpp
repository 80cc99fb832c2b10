#include "flow/messengertest.h"

namespace vesk::test {

MessengerTest::MessengerTest(const char* name, const char* simulator, const char* fileName)
    : Messenger(game, simulator, fileName), channel(name) {
    game.configure("FERNO_APP_ID=f-7\nKZ_APP_ID=k-7\nKZ_APP_KEY=k-key");
}

void MessengerTest::startLogin() {
    start();
    VESKLogin::Login(channel.c_str(), "", "", "");
}

VESKLoginRet MessengerTest::scanAndLogin() {
    startLogin();
    return observer.nextLogin().ret;
}

void MessengerTest::expectNewerOfCrossingPreCodes() {
    start();
    const size_t tries = static_cast<size_t>(triesOr(8));
    for (size_t i = 0; i < tries; ++i) {
        // Late, early and at once.
        for (const int delay : {i % 3 == 0 ? 40 : 5, i % 3 == 1 ? 40 : 5}) {
            backend.next({"auth/pcprecode", R"({"ret":0,"precode":"p"})", 200, delay});
        }
        VESKLogin::Login(channel.c_str(), "", "", "");
        backend.waitForRequest("auth/pcprecode", 1);
        VESKLogin::Login(channel.c_str(), "", "", "");
        ASSERT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS) << "in try " << i;
        backend.clear();
    }
    EXPECT_EQ(observer.loginCount(), tries);
    EXPECT_GE(game.logLines("mCurrentLoginSeqID is not equal"), tries / 3);
}

} // namespace vesk::test
