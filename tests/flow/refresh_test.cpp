#include "flow/refreshtest.h"

namespace vesk::test {
namespace {

struct FernoRefresh : RefreshTest {
    FernoRefresh() : RefreshTest("Ferno", "ferno", "frlogin.dll") {}
};

TEST_F(FernoRefresh, FreshTokenReplacesTheOldOne) {
    script("ctt=fresh\n");
    logInAndRun();
    expectRefreshed(R"("ctt":"fresh","expired":300)", 300);
    EXPECT_EQ(componentLines("frlogin_req_client_tmp_token").size(), 1u);
}

TEST_F(FernoRefresh, FailureLeavesNoToken) {
    script("on_token=10:token_fail:3:4\n");
    logInAndRun();
    expectDropped();
    EXPECT_EQ(game.logLines("Get Ferno login record failed!"), 1u);
}

TEST_F(FernoRefresh, AnswerAfterALogoutBringsNoLoginBack) {
    script("on_token=300:token\n");
    logInAndRun();
    EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
    waitForLogLine("Get Ferno login record succeed");
    VESKLoginRet held;
    EXPECT_FALSE(VESKLogin::GetLoginRet(held));
    EXPECT_EQ(logout().retCode, VESKError::NO_STORED_LOGIN);
}

} // namespace
} // namespace vesk::test
