#include "devkit/scanpagetest.h"
#include "support/waituntil.h"

namespace vesk::test {
namespace {

struct FernoScanPage : ScanPageTest {
    FernoScanPage() : ScanPageTest("Ferno", "ferno", "frlogin.dll") {}
};

TEST_F(FernoScanPage, ConfirmedCodeLogsIn) {
    startLogin();
    const VESKQrCodeRet code = observer.nextQrCode().ret;
    const std::string id = player.waitForSession(1);
    Session session = player.sessions().back();
    EXPECT_EQ(session["channel"], "Ferno");
    EXPECT_EQ(session["state"], "waiting");
    EXPECT_EQ(code.qrCodeUrl, player.url + "/qr/" + id + ".png");
    EXPECT_EQ(session["live"], "true");
    const Request preCode = backend.waitForRequest("auth/pcprecode");
    EXPECT_NE(session["seq"], "");
    EXPECT_NE(preCode.query.find("&seq=" + session["seq"] + "&"), std::string::npos);

    EXPECT_EQ(player.press(id, "scanned"), 200);
    waitForLogLine("Qrcode was scaned, waiting for confirm");
    EXPECT_EQ(observer.loginCount(), 0u);
    EXPECT_EQ(player.press(id, "confirm"), 200);
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    const Request login = backend.waitForRequest("auth/login");
    EXPECT_EQ(login.verdict, "ok");
    EXPECT_NE(login.body.find(R"("openid":"fr-1")"), std::string::npos) << login.body;
    EXPECT_EQ(player.newest("state"), "confirmed");
}

TEST_F(FernoScanPage, EachRefusalFailsTheLoginInItsOwnWay) {
    expectEachToFailALogin(
        {{"deny", "", "denied", "Error type:10009 Error code:0"},
         {"expire", "", "expired", "Error type:10010 Error code:0"},
         {"fail", ",\"code\":-42", "failed", "Error type:1 Error code:-42"},
         {"kickout", "", "kicked out", "Account had been kicked out! Error code:1"}});
}

TEST_F(FernoScanPage, ConfirmedPlayerCanBeKickedOutUntilTheLogout) {
    std::string id = showCode();
    player.press(id, "confirm");
    observer.nextLogin();
    EXPECT_EQ(player.newest("buttons"), "kickout");
    EXPECT_EQ(player.press(id, "kickout"), 200);
    waitUntil("the kick-out", [this] { return componentLines("\"kickout\"").size() == 1; });

    id = showCode(2);
    player.press(id, "confirm");
    observer.nextLogin();
    EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
    player.waitForState(id, "ended");
    EXPECT_EQ(player.press(id, "kickout"), 409);
}

TEST_F(FernoScanPage, SecondLoginEndsTheCodeOfTheFirst) {
    const std::string first = showCode();
    const std::string second = showCode(2);
    player.waitForState(first, "ended");
    EXPECT_EQ(player.press(first, "confirm"), 409);
    EXPECT_EQ(player.press(second, "confirm"), 200);
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    EXPECT_EQ(observer.loginCount(), 1u);
}

TEST_F(FernoScanPage, UnInstallDoesNotWaitForThePlayer) {
    expectUnInstallNotToWaitForThePlayer();
    EXPECT_EQ(componentLines("frlogin_uninit").size(), 1u);
}

TEST_F(FernoScanPage, EndedSessionDoesNotLeaveTheGameWaiting) {
    EXPECT_EQ(player.post("/sessions/" + showCode() + "/end", "{}").status, 200);
    EXPECT_EQ(observer.nextLogin().ret.retCode, 9999);
}

TEST_F(FernoScanPage, MissingBackendFailsTheLoginAtOnceAndAnotherMachineIsNotAsked) {
    for (const char* address : {"http://127.0.0.1:1", "http://192.0.2.1:80"}) {
        script(std::string("interactive=") + address);
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(scanAndLogin().retCode, 9999);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(1900));
    }
    EXPECT_EQ(game.logLines("Ferno get qrcode failed! Error type:1 Error code:1"), 2u);
}

} // namespace
} // namespace vesk::test
