#include <atomic>
#include <thread>

#include "support/gametest.h"

namespace vesk::test {
namespace {

struct Kind {
    const char *channel, *simulator, *file;
    int32_t channelID;
    const char* script;
    const char *url, *preCodeBody, *loginBody; ///< the bodies' beginnings
    const char *codeRequest, *codeArguments, *logout;
    const char* crossing; ///< the player does not confirm before both pre-codes are there
};
const Kind kFerno = {
    "Ferno",
    "ferno",
    "frlogin.dll",
    1,
    "ctt=ctt-1\nopenid=fr-1\nreq_logout=9\n", // a logout that is refused is one all the same
    "https://ferno.example/qr/1",
    R"({"channel_info":"","device_info":{)",
    R"({"channel_info":{"openid":"fr-1","ctt":"ctt-1"},)",
    "frlogin_req_qrcode",
    R"("app_id":"f-7","pre_code":"p-7","scope":"group_sns_userinfo,group_sns_login,)"
    R"(group_sns_base,group_sns_delegate_login")",
    "frlogin_req_logout",
    "on_qrcode=1:qr:u,60:success"};
const Kind kKZ = {"KZ",
                  "kz",
                  "KZOpenSDK.dll",
                  2,
                  "",
                  "https://kz.example/qr/1",
                  R"({"channel_info":{"devinfo":"SIM-SERIAL"},)",
                  R"({"channel_info":{"openid":"kz-openid-1","ctk":"kz-ctk-1"},)",
                  "LoginByQRCode",
                  R"("Size":200,"bSaved":true)",
                  "\"Logout\"",
                  "on_qrcode=1:info:1:u,60:result:0:3"};

struct Messengers : GameTest {
    std::vector<Kind> kinds = {kFerno};

    Messengers() {
        if (std::filesystem::exists(game.path() / "kz_full")) {
            kinds.push_back(kKZ);
        }
    }
};

TEST_F(Messengers, ScannedAndConfirmedCodeLogsInUntilTheLogout) {
    for (const Kind& kind : kinds) {
        const Messenger messenger(game, kind.simulator, kind.file);
        messenger.script(kind.script);
        backend.clear();
        backend.next({"auth/pcprecode", R"({"ret":0,"precode":"p-7"})"});
        const size_t heard = observer.loginCount();
        startLogin(kind.channel);
        const VESKQrCodeRet code = observer.nextQrCode().ret;
        EXPECT_EQ(code.methodNameID, kMethodNameQrCode);
        EXPECT_EQ(code.retCode, VESKError::SUCCESS);
        EXPECT_EQ(code.thirdCode, -1); // nobody outside has said anything
        EXPECT_EQ(code.channelID, kind.channelID);
        EXPECT_EQ(code.channel, kind.channel);
        EXPECT_EQ(code.qrCodeUrl, kind.url);

        const VESKLoginRet ret = observer.nextLogin().ret;
        EXPECT_EQ(ret.retCode, VESKError::SUCCESS);
        EXPECT_EQ(ret.channel, kind.channel);
        EXPECT_EQ(ret.channelID, kind.channelID);
        const Request preCode = backend.waitForRequest("auth/pcprecode");
        EXPECT_EQ(preCode.verdict, "ok");
        EXPECT_EQ(preCode.body.find(kind.preCodeBody), 0u) << preCode.body;
        const Request login = backend.waitForRequest("auth/login");
        EXPECT_EQ(login.verdict, "ok");
        EXPECT_EQ(login.body.find(kind.loginBody), 0u) << login.body;
        const auto requests = messenger.componentLines(kind.codeRequest);
        ASSERT_EQ(requests.size(), 1u);
        EXPECT_NE(requests[0].find(kind.codeArguments), std::string::npos) << requests[0];
        EXPECT_EQ(observer.loginCount(), heard + 1);

        const auto logOutTenTimes = [&kind] {
            for (int i = 0; i < 10; ++i) {
                VESKLogin::Logout(kind.channel, "", true);
            }
        };
        std::thread atOnce(logOutTenTimes);
        logOutTenTimes();
        atOnce.join();
        EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
        EXPECT_EQ(messenger.componentLines(kind.logout).size(), 21u);
        EXPECT_EQ(backend.waitForRequest("auth/logout").verdict, "ok");
    }
    EXPECT_EQ(game.logLines("Qrcode was scaned, waiting for confirm"), 1u);
}

TEST_F(Messengers, EveryFailureOfTheComponentEndsTheLogin) {
    for (const Kind& kind : kinds) {
        const Messenger messenger(game, kind.simulator, kind.file);
        const std::vector<const char*> scripts =
            kind.channelID == kFerno.channelID
                ? std::vector{"req_qrcode=5",
                              "on_qrcode=10:qr_fail:3:4",
                              "on_qrcode=10:qr:u,10:fail:10009:1",
                              "on_qrcode=10:kickout:-7",
                              "on_qrcode=10:exception",
                              "null_texts=1\non_qrcode=10:qr:u,10:fail:1:1"}
                : std::vector{"on_qrcode=10:result:5:4:1:gone",
                              "on_qrcode=10:info:1:u,10:result:1:6", "on_qrcode=10:null:3",
                              "on_qrcode=10:null:0"};
        for (const char* script : scripts) {
            messenger.script(script);
            const VESKLoginRet ret = login(kind.channel);
            EXPECT_EQ(ret.retCode, VESKError::CHANNEL_LOGIN_FAILED) << script;
            EXPECT_EQ(ret.methodNameID, kMethodNameLogin) << script;
            EXPECT_NE(ret.retMsg, "") << script;
        }
    }
    EXPECT_TRUE(backend.requests("auth/login").empty());
    EXPECT_EQ(game.logLines("Ferno get qrcode failed! Error type:3 Error code:4"), 1u);
    EXPECT_EQ(game.logLines("Account had been kicked out! Error code:-7"), 1u);
}

TEST_F(Messengers, CrossingPreCodesLeaveTheNewerLoginAnswered) {
    const char* const notCurrent = "mCurrentLoginSeqID is not equal";
    for (const Kind& kind : kinds) {
        const Messenger messenger(game, kind.simulator, kind.file);
        messenger.script(kind.crossing);
        const size_t dropped = game.logLines(notCurrent);
        for (const auto& [older, newer] :
             {std::pair{1500, 5}, std::pair{5, 40}, std::pair{5, 5}, std::pair{5, 5}}) {
            const size_t heard = observer.loginCount();
            for (const int delay : {older, newer}) {
                backend.next({"auth/pcprecode", R"({"ret":0,"precode":"p"})", 200, delay});
            }
            startLogin(kind.channel);
            backend.waitForRequest("auth/pcprecode");
            EXPECT_EQ(login(kind.channel).retCode, VESKError::SUCCESS) << older << " " << newer;
            if (older > newer) {
                waitForLogLine(notCurrent, dropped + 1);
                EXPECT_EQ(messenger.componentLines(kind.codeRequest).size(), 1u);
            }
            EXPECT_EQ(observer.loginCount(), heard + 1);
            backend.clear();
        }
    }
    EXPECT_EQ(observer.baseCount(), 0u);
}

struct Ferno : MessengerTest {
    Ferno() : MessengerTest("Ferno", "ferno", "frlogin.dll") {}
};

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

TEST_F(Ferno, LogoutWhileACodeIsShownLeavesTheLoginAndWhatComesAfterItReachesNobody) {
    script("on_qrcode=10:qr:u,500:success,2500:kickout:1,10:success");
    startLogin();
    observer.nextQrCode();
    EXPECT_EQ(logout("Ferno").retCode, VESKError::NO_STORED_LOGIN);
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    waitForLogLine("mCurrentLoginSeqID is not equal");
    EXPECT_EQ(game.logLines(" login observer is null or this seqID in cache"), 1u);
    EXPECT_EQ(observer.loginCount(), 1u);
    EXPECT_TRUE(isHeld());
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

} // namespace
} // namespace vesk::test
