#include "flow/flowtest.h"

namespace vesk::test {
namespace {

using LoginFlow = FlowTest;

const char* const kDropped = " login observer is null or this seqID in cache";

TEST_F(LoginFlow, OnlyTheNewerOfTwoLoginsIsAnswered) {
    Answer slow = loginAnswer("old");
    slow.delayMs = 1000;
    backend.next(slow);
    backend.next(loginAnswer("new"));
    start();
    VESKLogin::Login("Steam", "", "", "");
    backend.waitForRequest("auth/login");
    EXPECT_EQ(login().openid, "openid-new");

    waitForLogLine(kDropped);
    EXPECT_EQ(observer.loginCount(), 1u);
    VESKLoginRet held;
    EXPECT_TRUE(VESKLogin::GetLoginRet(held));
    EXPECT_EQ(held.openid, "openid-new");
    EXPECT_EQ(readFile(game.loginCache()), "Steamuid-new");
}

TEST_F(LoginFlow, ExtraJsonIsCheckedButNeitherStopsALoginNorLeavesTheGame) {
    const char* const wrongType = "unknown error , it should be String type";
    const char* const notAnObject = "unknown error occur while parser json or val is NULL";
    const std::string deep(100000, '[');
    const struct {
        const char* extraJson;
        size_t wrongTypes, notObjects; ///< log lines until now
    } rows[] = {{"", 0, 0},
                {R"({"password":"abc"})", 0, 0},
                {R"({"other":1})", 0, 0},
                {R"({"password":1})", 1, 0},
                {"no JSON", 1, 1},
                {deep.c_str(), 1, 2}};
    for (const auto& row : rows) {
        EXPECT_EQ(login(row.extraJson).retCode, VESKError::SUCCESS);
        EXPECT_EQ(game.logLines(wrongType), row.wrongTypes) << std::string(row.extraJson, 0, 20);
        EXPECT_EQ(game.logLines(notAnObject), row.notObjects) << std::string(row.extraJson, 0, 20);
    }
    for (const Request& request : backend.requests("auth/login")) {
        EXPECT_EQ(request.verdict, "ok");
        EXPECT_EQ(request.body.find("password"), std::string::npos);
    }
}

TEST_F(LoginFlow, UnknownChannelIsNeverAnswered) {
    start();
    for (const char* channel : {"steam", "Steamy", "", "Guest"}) {
        VESKLogin::Login(channel, "", "", "");
    }
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    EXPECT_EQ(observer.loginCount(), 1u);
    EXPECT_EQ(observer.baseCount(), 0u);
    EXPECT_EQ(backend.requests("/").size(), 1u);
}

TEST_F(LoginFlow, NullObserverSilencesARunningLogin) {
    Answer slow = loginAnswer("A");
    slow.delayMs = 300;
    backend.next(slow);
    start();
    VESKLogin::Login("Steam", "", "", "");
    VESKLogin::SetLoginObserver(nullptr);

    waitForLogLine(kDropped);
    EXPECT_EQ(observer.loginCount(), 0u);
    VESKLoginRet held;
    EXPECT_TRUE(VESKLogin::GetLoginRet(held));
    EXPECT_EQ(held.openid, "openid-A");
}

TEST_F(LoginFlow, FirstLoginAfterARestartTellsThatTheRememberedPlayerWasNotLoggedOut) {
    writeFile(game.loginCache(), "Steamuid-old");
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    const VESKBaseRet ret = observer.nextBase().ret;
    EXPECT_EQ(ret.methodNameID, kMethodNameLogout);
    EXPECT_EQ(ret.retCode, -1);
    EXPECT_EQ(game.steamCalls("ISteamUser_CancelAuthTicket"), 0u);
}

} // namespace
} // namespace vesk::test
