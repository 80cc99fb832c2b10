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

void MessengerTest::expectNewerOfCrossingPreCodes(const char* codeRequest) {
    const std::pair<int, int> delays[] = {{1500, 5}, {5, 40}, {5, 5}, {5, 5}, {5, 5}};
    for (const auto& [older, newer] : delays) {
        for (const int delay : {older, newer}) {
            backend.next({"auth/pcprecode", R"({"ret":0,"precode":"p"})", 200, delay});
        }
        startLogin();
        backend.waitForRequest("auth/pcprecode", 1);
        ASSERT_EQ(scanAndLogin().retCode, VESKError::SUCCESS) << older << " and " << newer;
        if (older > newer) {
            waitForLogLine("mCurrentLoginSeqID is not equal");
            EXPECT_EQ(componentLines(codeRequest).size(), 1u) << "asked for the older login";
        }
        backend.clear();
    }
    EXPECT_EQ(observer.loginCount(), std::size(delays));
}

} // namespace vesk::test
