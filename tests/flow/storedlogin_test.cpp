#include "flow/flowtest.h"

namespace vesk::test {
namespace {

using AutoLogin = FlowTest;

TEST_F(AutoLogin, IsRefusedWithoutABackendOfOnesOwn) {
    writeFile(game.path() / "VESKConfig.ini", "VESK_GAME_ID=1106\n");
    start();
    VESKLogin::AutoLogin();
    const VESKLoginRet ret = observer.nextLogin().ret;
    EXPECT_EQ(ret.retCode, VESKError::AUTOLOGIN_NOT_ALLOWED);
    EXPECT_EQ(ret.retMsg, "Auto login only support on VESK test environment");
    EXPECT_EQ(ret.methodNameID, kMethodNameAutoLogin);
}

TEST_F(AutoLogin, IsRefusedWithoutAStoredLoginOfTheMessenger) {
    const auto autoLogin = [] {
        VESKLogin::AutoLogin();
        const VESKLoginRet ret = observer.nextLogin().ret;
        EXPECT_EQ(ret.methodNameID, kMethodNameAutoLogin);
        return ret;
    };
    start();
    const VESKLoginRet nothingStored = autoLogin();
    EXPECT_EQ(nothingStored.retCode, VESKError::NO_STORED_LOGIN);
    EXPECT_NE(nothingStored.retMsg, "");

    const char* const onlyKz = "Auto login only support on KZ channel";
    writeFile(game.loginCache(), "Steamuid-old");
    const VESKLoginRet fromFile = autoLogin();
    EXPECT_EQ(fromFile.retCode, VESKError::AUTOLOGIN_NOT_ALLOWED);
    EXPECT_EQ(fromFile.retMsg, onlyKz);

    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    EXPECT_EQ(autoLogin().retMsg, onlyKz);
    EXPECT_EQ(backend.requests("/").size(), 1u);
}

} // namespace
} // namespace vesk::test
