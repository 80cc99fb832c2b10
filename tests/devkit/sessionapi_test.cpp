#include <future>
#include <gtest/gtest.h>

#include "devkit/scanpagetest.h"

namespace vesk::test {
namespace {

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
    EXPECT_EQ(player.newest("buttons"), "scanned,confirm,deny,expire,kickout,fail");
    player.press(ferno, "scanned");
    EXPECT_EQ(player.newest("buttons"), "confirm,deny,expire,kickout,fail");
    EXPECT_EQ(player.press(ferno, "scanned"), 409);
    player.press(ferno, "deny");
    EXPECT_EQ(player.newest("buttons"), "");
    EXPECT_EQ(player.press(ferno, "confirm"), 409);
    player.begin("KZ");
    EXPECT_EQ(player.newest("buttons"), "scanned,confirm,deny,expire,fail");
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
