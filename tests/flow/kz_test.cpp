#include "support/gametest.h"

namespace vesk::test {
namespace {

struct KZ : MessengerTest {
    KZ() : MessengerTest("KZ", "kz", "KZOpenSDK.dll") {}
};

TEST_F(KZ, VisitByAScannedCodeGivesEveryReferenceBack) {
    startLogin();
    const VESKQrCodeRet code = observer.nextQrCode().ret;
    EXPECT_EQ(code.methodNameID, kMethodNameQrCode);
    EXPECT_EQ(code.channelID, 2);
    EXPECT_EQ(code.qrCodeUrl, "https://kz.example/qr/1");
    const VESKLoginRet ret = observer.nextLogin().ret;
    EXPECT_EQ(ret.retCode, VESKError::SUCCESS);
    EXPECT_EQ(ret.channel, "KZ");
    EXPECT_EQ(ret.channelID, 2);

    const Request preCode = backend.waitForRequest("auth/pcprecode");
    EXPECT_EQ(preCode.verdict, "ok");
    EXPECT_EQ(preCode.body.find(R"({"channel_info":{"devinfo":"SIM-SERIAL"},)"), 0u);
    const Request login = backend.waitForRequest("auth/login");
    EXPECT_EQ(login.verdict, "ok");
    EXPECT_EQ(login.body.find(R"({"channel_info":{"openid":"kz-openid-1","ctk":"kz-ctk-1"},)"), 0u);
    const auto requests = componentLines("LoginByQRCode");
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_NE(requests[0].find(R"("Size":200,"bSaved":true)"), std::string::npos) << requests[0];

    EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
    EXPECT_EQ(componentLines("\"Logout\"").size(), 1u);
    EXPECT_EQ(backend.waitForRequest("auth/logout").verdict, "ok");
    VESKLogin::UnInstall();
    waitUntil("the component to go", [this] { return !componentLines("\"objects\":0").empty(); });
    EXPECT_EQ(game.logLines("Uninit OpenSDK succeed"), 1u);
}

TEST_F(KZ, EveryFailureOfTheComponentEndsTheLogin) {
    for (const char* settings :
         {"on_qrcode=10:result:5:4:1:gone", "on_qrcode=10:info:1:u,10:result:1:6",
          "on_qrcode=10:null:3", "on_qrcode=10:null:0"}) {
        script(settings);
        const VESKLoginRet ret = scanAndLogin();
        EXPECT_EQ(ret.retCode, VESKError::CHANNEL_LOGIN_FAILED) << settings;
        EXPECT_EQ(ret.methodNameID, kMethodNameLogin) << settings;
    }
    EXPECT_TRUE(backend.requests("auth/login").empty());
}

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
