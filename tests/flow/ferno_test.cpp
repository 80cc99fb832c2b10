#include <atomic>
#include <thread>

#include "support/gametest.h"

namespace vesk::test {
namespace {

struct Ferno : MessengerTest {
    Ferno() : MessengerTest("Ferno", "ferno", "frlogin.dll") {}
};

TEST_F(Ferno, ScannedAndConfirmedCodeLogsIn) {
    script("ctt=ctt-1\nopenid=fr-1\n");
    backend.next({"auth/pcprecode", R"({"ret":0,"precode":"p-7"})"});
    startLogin();
    const VESKQrCodeRet code = observer.nextQrCode().ret;
    EXPECT_EQ(code.methodNameID, kMethodNameQrCode);
    EXPECT_EQ(code.retCode, VESKError::SUCCESS);
    EXPECT_EQ(code.thirdCode, -1); // nobody outside has said anything
    EXPECT_EQ(code.channelID, 1);
    EXPECT_EQ(code.channel, "Ferno");
    EXPECT_EQ(code.qrCodeUrl, "https://ferno.example/qr/1");

    const VESKLoginRet ret = observer.nextLogin().ret;
    EXPECT_EQ(ret.retCode, VESKError::SUCCESS);
    EXPECT_EQ(ret.channel, "Ferno");
    EXPECT_EQ(ret.channelID, 1);
    const Request preCode = backend.waitForRequest("auth/pcprecode");
    EXPECT_EQ(preCode.verdict, "ok");
    EXPECT_EQ(preCode.body.find(R"({"channel_info":"","device_info":{)"), 0u);
    const Request login = backend.waitForRequest("auth/login");
    EXPECT_EQ(login.verdict, "ok");
    EXPECT_EQ(login.body.find(R"({"channel_info":{"openid":"fr-1","ctt":"ctt-1"},)"), 0u);
    const auto requests = componentLines("frlogin_req_qrcode");
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_NE(requests[0].find(R"("app_id":"f-7","pre_code":"p-7")"), std::string::npos)
        << requests[0];
    EXPECT_NE(requests[0].find("group_sns_userinfo,group_sns_login,group_sns_base,"
                               "group_sns_delegate_login"),
              std::string::npos);
    EXPECT_EQ(observer.loginCount(), 1u);
    EXPECT_EQ(game.logLines("Qrcode was scaned, waiting for confirm"), 1u);
}

TEST_F(Ferno, EveryFailureOfTheComponentEndsTheLogin) {
    for (const char* settings :
         {"req_qrcode=5", "on_qrcode=10:qr_fail:3:4", "on_qrcode=10:qr:u,10:fail:10009:1",
          "on_qrcode=10:kickout:-7", "on_qrcode=10:exception",
          "null_texts=1\non_qrcode=10:qr:u,10:fail:1:1"}) {
        script(settings);
        const VESKLoginRet ret = scanAndLogin();
        EXPECT_EQ(ret.retCode, VESKError::CHANNEL_LOGIN_FAILED) << settings;
        EXPECT_EQ(ret.methodNameID, kMethodNameLogin) << settings;
        EXPECT_NE(ret.retMsg, "") << settings;
    }
    EXPECT_TRUE(backend.requests("auth/login").empty());
    EXPECT_EQ(game.logLines("Ferno get qrcode failed! Error type:3 Error code:4"), 1u);
    EXPECT_EQ(game.logLines("Account had been kicked out! Error code:-7"), 1u);
}

TEST_F(Ferno, PreCodeFailuresAreAnsweredWithoutTheComponent) {
    const struct {
        Answer answer;
        int32_t retCode, thirdCode;
        const char* retMsg; ///< null: a text of the SDK's own
    } rows[] = {
        {{"auth/pcprecode", R"({"ret":0,"precode":"","msg":"none left"})"}, 5, 0, "none left"},
        {{"auth/pcprecode", R"({"ret":3,"precode":"p","msg":"no"})"}, 5, 3, "no"},
        {{"auth/pcprecode", R"({"ret":"0","precode":"p"})"}, 5, -1, ""},
        {{"auth/pcprecode", "gone", 404}, 4, 404, nullptr},
    };
    for (const auto& row : rows) {
        backend.next(row.answer);
        const VESKLoginRet ret = scanAndLogin();
        EXPECT_EQ(ret.retCode, row.retCode) << row.answer.body;
        EXPECT_EQ(ret.thirdCode, row.thirdCode) << row.answer.body;
        EXPECT_TRUE(row.retMsg == nullptr ? !ret.retMsg.empty() : ret.retMsg == row.retMsg)
            << ret.retMsg;
        EXPECT_EQ(ret.methodNameID, kMethodNameLogin);
    }
    EXPECT_TRUE(componentLines("frlogin").empty());
}

TEST_F(Ferno, KickOutAfterADeliveredLoginReachesNobody) {
    script("on_qrcode=10:qr:u,10:success,3000:kickout:1,10:success");
    EXPECT_EQ(scanAndLogin().retCode, VESKError::SUCCESS);
    waitForLogLine("mCurrentLoginSeqID is not equal");
    EXPECT_EQ(game.logLines(" login observer is null or this seqID in cache"), 1u);
    EXPECT_EQ(observer.loginCount(), 1u);
    EXPECT_TRUE(isHeld());
}

TEST_F(Ferno, LogoutWhileACodeIsShownLeavesTheLoginRunning) {
    script("on_qrcode=10:qr:u,1000:success");
    startLogin();
    observer.nextQrCode();
    EXPECT_EQ(logout("Ferno").retCode, VESKError::NO_STORED_LOGIN);
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
}

TEST_F(Ferno, LogoutReachesTheComponentAndTheBackend) {
    script("req_logout=9");
    EXPECT_EQ(scanAndLogin().retCode, VESKError::SUCCESS);
    const auto logOutTenTimes = [] {
        for (int i = 0; i < 10; ++i) {
            VESKLogin::Logout("Ferno", "", true);
        }
    };
    std::thread atOnce(logOutTenTimes);
    logOutTenTimes();
    atOnce.join();
    EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
    EXPECT_EQ(componentLines("frlogin_req_logout").size(), 21u);
    EXPECT_EQ(backend.waitForRequest("auth/logout").verdict, "ok");
    EXPECT_EQ(game.logLines("Call \"frlogin_req_logout\" result:9"), 21u);
}

TEST_F(Ferno, LogoutThatTakesLongLeavesTheLoginThatFollows) {
    EXPECT_EQ(scanAndLogin().retCode, VESKError::SUCCESS);
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    script("call_ms=3000");
    std::thread slow([] { VESKLogin::Logout("Ferno", "", false); });
    waitUntil("the logout", [this] { return componentLines("frlogin_req_logout").size() == 2; });
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    slow.join();
    EXPECT_EQ(observer.nextBase().ret.retCode, VESKError::SUCCESS);
    EXPECT_TRUE(isHeld());
    EXPECT_TRUE(backend.requests("auth/logout").empty());
    EXPECT_EQ(game.logLines("remove task success :refreshTokenTask"), 2u) << "of the first two";
}

TEST_F(Ferno, ResultsMayCallBackIntoTheSdk) {
    static ActingObserver& acting = *new ActingObserver;
    static std::atomic<int> logins{0};
    static std::atomic<int> logouts{0};
    acting.onLogin = [](const VESKLoginRet& ret) {
        EXPECT_EQ(ret.retCode, VESKError::SUCCESS);
        ++logins;
        VESKLogin::Logout("", "", false);
    };
    acting.onBase = [](const VESKBaseRet& ret) {
        EXPECT_EQ(ret.retCode, VESKError::SUCCESS);
        if (++logouts == 1) {
            VESKLogin::Login("Ferno", "", "", "");
        }
    };
    VESKLogin::SetLoginObserver(&acting);
    VESKLogin::Login("Ferno", "", "", "");
    waitUntil("both visits", [] { return logouts == 2; });
    EXPECT_EQ(logins, 2);
    EXPECT_EQ(backend.waitForRequest("auth/logout", 2).verdict, "ok");
}

TEST_F(Ferno, UnInstallInsideACallbackLetsItReturnFirst) {
    static ActingObserver& acting = *new ActingObserver;
    acting.onQrCode = [](const VESKQrCodeRet&) { VESKLogin::UnInstall(); };
    VESKLogin::SetLoginObserver(&acting);
    script("linger_ms=700\non_qrcode=10:qr:u,10:success");
    VESKLogin::Login("Ferno", "", "", "");
    waitForLogLine("UnInstall vesk dll");
    waitUntil("the callback to return",
              [this] { return !componentLines("\"callback\":\"qr\"").empty(); });
    EXPECT_TRUE(backend.requests("auth/login").empty());
}

} // namespace
} // namespace vesk::test
