#include <ctime>

#include "flow/flowtest.h"

namespace vesk::test {
namespace {

using StoredLogin = FlowTest;
using AutoLogin = FlowTest;

TEST_F(StoredLogin, IsFoundWhateverItsExpiryAndTheCodeTellsAnExpiredOne) {
    const std::time_t now = std::time(nullptr);
    const struct {
        std::time_t expiry;
        int32_t retCode;
        const char* retMsg;
    } rows[] = {{0, 0, "Success"}, {now - 1, 1002, "token expire"}, {now + 600, 0, "Success"}};
    for (const auto& row : rows) {
        backend.next(loginAnswer("A", ",\"token_expire_time\":" + std::to_string(row.expiry)));
        EXPECT_EQ(login().retCode, VESKError::SUCCESS);
        VESKLoginRet held;
        EXPECT_TRUE(VESKLogin::GetLoginRet(held));
        EXPECT_EQ(held.methodNameID, kMethodNameGetLoginRet);
        EXPECT_EQ(held.retCode, row.retCode) << row.expiry;
        EXPECT_EQ(held.retMsg, row.retMsg) << row.expiry;
        EXPECT_EQ(held.tokenExpire, row.expiry);
    }
}

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
