#include "support/gametest.h"

namespace vesk::test {
namespace {

struct KZ : MessengerTest {
    KZ() : MessengerTest("KZ", "kz", "KZOpenSDK.dll") {}
};

TEST_F(KZ, RememberedPlayerIsLoggedInWithoutACode) {
    writeFile(game.loginCache(), "KZuid-of-earlier");
    EXPECT_EQ(autoLogin().retCode, VESKError::SUCCESS);
    EXPECT_TRUE(backend.requests("auth/pcprecode").empty());
    EXPECT_EQ(componentLines("LoginByLocalLoginUser").size(), 1u);
}

TEST_F(KZ, ComponentThatCannotBeHeardIsAskedForNothing) {
    script("advise=0x80004002\n");
    writeFile(game.loginCache(), "KZuid-of-earlier");
    start();
    VESKLogin::AutoLogin();
    ASSERT_EQ(observer.loginCount(), 1u);
    for (const VESKLoginRet& ret : {observer.nextLogin().ret, scanAndLogin()}) {
        EXPECT_EQ(ret.retCode, VESKError::CHANNEL_INIT_FAILED);
        EXPECT_EQ(ret.methodNameID, kMethodNameLogin);
        EXPECT_EQ(ret.retMsg, "KZ OpenSDK events cannot be received! Advise failed: 0x80004002");
    }
    EXPECT_TRUE(componentLines("GetLocalLoginList").empty());
    EXPECT_TRUE(componentLines("LoginByQRCode").empty());
}

} // namespace
} // namespace vesk::test
