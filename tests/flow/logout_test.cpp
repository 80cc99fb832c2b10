#include <ctime>

#include "flow/flowtest.h"

namespace vesk::test {
namespace {

using Logout = FlowTest;

TEST_F(Logout, TellsTheBackendAndForgetsTheLogin) {
    backend.next(loginAnswer("A"));
    login();
    const VESKBaseRet ret = logout("Steam");
    EXPECT_EQ(ret.methodNameID, kMethodNameLogout);
    EXPECT_EQ(ret.retCode, VESKError::SUCCESS);
    EXPECT_EQ(ret.thirdCode, -1); // the channel's answer has no code of its own
    EXPECT_EQ(ret.thirdMsg, "");

    const Request request = backend.waitForRequest("auth/logout");
    EXPECT_EQ(request.verdict, "ok");
    EXPECT_EQ(request.body, R"({"token":"token-A","openid":"openid-A"})");
    EXPECT_EQ(request.query.find("channelid=21&gameid=1106&os=5&seq=1106-"), 0u);
    waitForLogLine("logout request success");

    EXPECT_EQ(game.steamCalls("ISteamUser_CancelAuthTicket"), 1u);
    EXPECT_FALSE(std::filesystem::exists(game.loginCache()));
    VESKLoginRet held;
    EXPECT_FALSE(VESKLogin::GetLoginRet(held));
    EXPECT_EQ(held.retCode, VESKError::NO_STORED_LOGIN);
    EXPECT_EQ(game.logLines("remove task success :refreshTokenTask"), 1u);
}

TEST_F(Logout, OfTheChannelOnlyKeepsTheLoginAndTheBackendUntold) {
    login();
    EXPECT_EQ(logout("", true).retCode, VESKError::SUCCESS);
    EXPECT_EQ(game.steamCalls("ISteamUser_CancelAuthTicket"), 1u);
    EXPECT_EQ(game.logLines("sendLogoutRequest"), 0u);
    VESKLoginRet held;
    EXPECT_TRUE(VESKLogin::GetLoginRet(held));
    EXPECT_EQ(held.retCode, VESKError::SUCCESS);
}

TEST_F(Logout, WithAnExpiredTokenStillReachesTheChannelAndTheBackend) {
    const std::time_t past = std::time(nullptr) - 10;
    backend.next(loginAnswer("A", ",\"token_expire_time\":" + std::to_string(past)));
    login();
    EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
    EXPECT_EQ(game.steamCalls("ISteamUser_CancelAuthTicket"), 1u);
    EXPECT_EQ(backend.waitForRequest("auth/logout").verdict, "ok");
}

TEST_F(Logout, WithoutALoginReportsWhatIsKnown) {
    const struct {
        const char* file;
        int32_t retCode;
    } rows[] = {{"", VESKError::NO_STORED_LOGIN}, {"Steamuid-old", -1}, {"KZ1", -1}};
    for (const auto& row : rows) {
        writeFile(game.loginCache(), row.file);
        const VESKBaseRet ret = logout("Steam");
        EXPECT_EQ(ret.methodNameID, kMethodNameLogout) << row.file;
        EXPECT_EQ(ret.retCode, row.retCode) << row.file;
        EXPECT_NE(ret.retMsg, "") << row.file;
        EXPECT_EQ(readFile(game.loginCache()), row.file);
    }
    EXPECT_TRUE(backend.requests("/").empty());
}

TEST_F(Logout, OfAGuestAsksNoChannel) {
    login();
    const VESKBaseRet ret = logout("Guest");
    EXPECT_EQ(ret.methodNameID, kMethodNameLogout);
    EXPECT_EQ(ret.retCode, VESKError::SUCCESS);
    EXPECT_EQ(game.steamCalls("ISteamUser_CancelAuthTicket"), 0u);
    EXPECT_EQ(backend.waitForRequest("auth/logout").verdict, "ok");
}

TEST_F(Logout, IsHeardBeforeTheBackendAnswers) {
    login();
    Answer never{"auth/logout", ""};
    never.action = "hang";
    backend.next(never);
    VESKLogin::Logout("", "", false);
    EXPECT_EQ(observer.baseCount(), 1u); // inside the call, as Steam answers at once
    EXPECT_EQ(backend.waitForRequest("auth/logout").verdict, "ok");
    EXPECT_EQ(game.logLines("logout request success"), 0u);
}

} // namespace
} // namespace vesk::test
