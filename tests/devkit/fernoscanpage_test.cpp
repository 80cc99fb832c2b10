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
    const Session session = player.waitForSession();
    EXPECT_EQ(session.channel, "Ferno");
    EXPECT_EQ(session.state, "waiting");
    EXPECT_EQ(session.qrCode, code.qrCodeUrl);
    EXPECT_TRUE(session.live);

    EXPECT_EQ(player.press(session.id, "scanned"), 200);
    waitForLogLine("Qrcode was scaned, waiting for confirm");
    EXPECT_EQ(observer.loginCount(), 0u);
    EXPECT_EQ(player.press(session.id, "confirm"), 200);
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    const Request login = backend.waitForRequest("auth/login");
    EXPECT_EQ(login.verdict, "ok");
    EXPECT_NE(login.body.find(R"("openid":"fr-1")"), std::string::npos) << login.body;
    EXPECT_EQ(player.sessions().back().state, "confirmed");
}

TEST_F(FernoScanPage, SessionCarriesTheSequenceIdOfItsLogin) {
    const Session session = showCode();
    const Request preCode = backend.waitForRequest("auth/pcprecode");
    EXPECT_NE(session.seq, "");
    EXPECT_NE(preCode.query.find("&seq=" + session.seq + "&"), std::string::npos)
        << session.seq << " is not in " << preCode.query;
}

TEST_F(FernoScanPage, EachRefusalFailsTheLoginInItsOwnWay) {
    const struct {
        const char *button, *more, *state, *logged;
    } rows[] = {
        {"deny", "", "denied", "Error type:10009 Error code:0"},
        {"expire", "", "expired", "Error type:10010 Error code:0"},
        {"fail", ",\"code\":-42", "failed", "Error type:1 Error code:-42"},
        {"kickout", "", "kicked out", "Account had been kicked out! Error code:1"},
    };
    size_t count = 0;
    for (const auto& row : rows) {
        const Session session = showCode(++count);
        EXPECT_EQ(player.press(session.id, row.button, row.more), 200) << row.button;
        const VESKLoginRet ret = observer.nextLogin().ret;
        EXPECT_EQ(ret.retCode, 9999) << row.button;
        EXPECT_EQ(game.logLines(row.logged), 1u) << row.button;
        EXPECT_EQ(player.sessions().back().state, row.state);
        EXPECT_FALSE(player.sessions().back().live) << row.button;
    }
    EXPECT_TRUE(backend.requests("auth/login").empty());
}

TEST_F(FernoScanPage, ConfirmedPlayerCanBeKickedOutUntilTheLogout) {
    Session session = showCode();
    player.press(session.id, "confirm");
    observer.nextLogin();
    EXPECT_EQ(player.sessions().back().buttons, std::vector<std::string>{"kickout"});
    EXPECT_EQ(player.press(session.id, "kickout"), 200);
    waitUntil("the kick-out", [this] { return componentLines("\"kickout\"").size() == 1; });

    session = showCode(2);
    player.press(session.id, "confirm");
    observer.nextLogin();
    EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
    player.waitForState(session.id, "ended");
    EXPECT_EQ(player.press(session.id, "kickout"), 409);
}

TEST_F(FernoScanPage, SecondLoginEndsTheCodeOfTheFirst) {
    const Session first = showCode();
    const Session second = showCode(2);
    player.waitForState(first.id, "ended");
    EXPECT_EQ(player.press(first.id, "confirm"), 409);
    EXPECT_EQ(player.press(second.id, "confirm"), 200);
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    EXPECT_EQ(observer.loginCount(), 1u);
}

TEST_F(FernoScanPage, UnInstallDoesNotWaitForThePlayer) {
    const Session session = showCode();
    const auto begin = std::chrono::steady_clock::now();
    VESKLogin::UnInstall();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(1500));
    player.waitForState(session.id, "ended");
    EXPECT_EQ(componentLines("frlogin_uninit").size(), 1u);
}

TEST_F(FernoScanPage, EndedSessionDoesNotLeaveTheGameWaiting) {
    const Session session = showCode();
    EXPECT_EQ(player.post("/sessions/" + session.id + "/end", "{}").status, 200);
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

TEST_F(FernoScanPage, ScriptedMessengerRegistersNothing) {
    script("openid=fr-2");
    EXPECT_EQ(scanAndLogin().retCode, VESKError::SUCCESS);
    EXPECT_TRUE(player.sessions().empty());
}

} // namespace
} // namespace vesk::test
