#include <future>

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
    EXPECT_EQ(player.newest("buttons"), R"(["kickout"])");
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
    EXPECT_NE(player.get("/qr/" + first + ".png").body, player.get("/qr/" + second + ".png").body);
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

struct SessionApi : ::testing::Test {
    const ScanPlayer player{};
};

TEST_F(SessionApi, PageOfAnotherSiteCanDoNothing) {
    const std::string press = "/sessions/" + player.begin("Ferno") + "/press";
    const std::string confirm = R"({"button":"confirm"})";
    const char* const elsewhere = "Origin: http://evil.example";
    for (const char* header : {elsewhere, "Origin: null", "Origin: http://localhost:1",
                               "Host: evil.example", "Host: 127.0.0.1.evil.example"}) {
        EXPECT_EQ(player.post(press, confirm, header).status, 403) << header;
    }
    for (const char* type : {"text/plain", "application/x-www-form-urlencoded",
                             "text/plain; application/json", "application/jsonp"}) {
        EXPECT_EQ(player.post(press, confirm, "Accept: */*", type).status, 415) << type;
    }
    for (const char* path : {"/sessions", "/next", "/clear", "/line", "/certificate", "/tls"}) {
        EXPECT_EQ(player.post(path, R"({"channel":"KZ"})", elsewhere).status, 403) << path;
    }
    for (const char* path : {"/", "/events", "/requests", "/sessions", "/scanpage.js"}) {
        EXPECT_EQ(player.get(path, "Host: evil.example").status, 403) << path;
    }
    ASSERT_EQ(player.sessions().size(), 1u);
    EXPECT_EQ(player.newest("state"), "waiting");

    EXPECT_EQ(player.post(press, confirm, "Origin: " + player.url).status, 200);
    EXPECT_EQ(player.newest("state"), "confirmed");
}

TEST_F(SessionApi, WaitingScriptHearsAButtonAtOnceAndNothingInTheEnd) {
    const std::string id = player.begin("KZ");
    const std::string wait = "/sessions/" + id + "/word?wait_ms=20000&index=";
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(player.get("/sessions/" + id + "/word?wait_ms=300").body,
              R"({"button":"","code":0,"over":false})");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(290));
    auto waiting = std::async(std::launch::async, [&] { return player.get(wait + "0").body; });
    EXPECT_EQ(player.press(id, "scanned"), 200);
    EXPECT_EQ(waiting.get(), R"({"button":"scanned","code":0,"over":false})");
    EXPECT_EQ(player.press(id, "fail", ",\"code\":77"), 200);
    EXPECT_EQ(player.get(wait + "1").body, R"({"button":"fail","code":77,"over":true})");
    EXPECT_EQ(player.get(wait + "0").body, R"({"button":"scanned","code":0,"over":false})");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

TEST_F(SessionApi, ButtonsAreThoseThatMakeSense) {
    const std::string ferno = player.begin("Ferno");
    EXPECT_EQ(player.newest("buttons"),
              R"(["scanned","confirm","deny","expire","kickout","fail"])");
    player.press(ferno, "scanned");
    EXPECT_EQ(player.newest("buttons"), R"(["confirm","deny","expire","kickout","fail"])");
    EXPECT_EQ(player.press(ferno, "scanned"), 409);
    player.press(ferno, "deny");
    EXPECT_EQ(player.newest("buttons"), R"([])");
    EXPECT_EQ(player.press(ferno, "confirm"), 409);
    player.begin("KZ");
    EXPECT_EQ(player.newest("buttons"), R"(["scanned","confirm","deny","expire","fail"])");
}

TEST_F(SessionApi, WrongRequestsAreRefusedWithASentence) {
    const std::string session = "/sessions/" + player.begin("Ferno");
    const struct {
        std::string path, body;
        long status;
    } rows[] = {
        {"/sessions", R"({"channel":"Steam"})", 400},
        {"/sessions", R"({"channel":"KZ","qrcode":")" + std::string(1001, 'x') + "\"}", 400},
        {"/sessions", "[]", 400},
        {"/sessions", "{", 400},
        {session + "/press", R"({"button":"explode"})", 400},
        {session + "/press", R"({"button":"fail"})", 400},
        {session + "/press", R"({"button":"fail","code":0})", 400},
        {"/sessions/00/press", R"({"button":"deny"})", 404},
        {"/sessions/00/end", "{}", 404},
        {"/sessions/../press", "{}", 404},
    };
    for (const auto& row : rows) {
        const ControlAnswer answer = player.post(row.path, row.body);
        EXPECT_EQ(answer.status, row.status) << row.path << row.body;
        EXPECT_EQ(answer.body.find(R"({"error":")"), 0u) << answer.body;
    }
    EXPECT_EQ(player.get(session + "/word?wait_ms=soon").status, 400);
    EXPECT_EQ(player.get("/qr/00.png").status, 404);
    EXPECT_EQ(player.newest("state"), "waiting");
}

TEST_F(SessionApi, SessionWhoseOwnerHasGoneSilentIsLost) {
    const std::string id = player.begin("Ferno");
    EXPECT_EQ(player.newest("live"), "true");
    player.waitForState(id, "lost");
    EXPECT_EQ(player.newest("live"), "false");
    player.get("/sessions/" + id + "/word");
    EXPECT_EQ(player.newest("state"), "waiting");
}

TEST_F(SessionApi, OldSessionsMakeRoom) {
    for (int i = 0; i < 30; ++i) {
        player.post("/sessions/" + player.begin("Ferno") + "/end", "{}");
    }
    const std::string live = player.begin("Ferno");
    EXPECT_EQ(player.sessions().size(), 21u);
    EXPECT_EQ(player.newest("id"), live);
}

} // namespace
} // namespace vesk::test
