#include <ctime>
#include <sstream>

#include "samples/gamewindow.h"
#include "vesk/vesk.hpp"

namespace vesk::test {
namespace {

struct Game : GameWindow {
    /// Shows a code, which is the one that the messenger has handed out.
    Session showCode(const std::string& channel, const std::string& key, size_t count = 1) {
        press(key);
        await("Signing in through " + channel, kLarge);
        player.waitForSession(count);
        Session session = player.sessions().back();
        waitUntil("the QR code", [&] { return scan() == session["qrcode"]; });
        await("picture");
        return session;
    }
};

TEST_F(Game, ShowsWhoHasLoggedInThroughSteam) {
    player.post("/sessions", R"({"channel":"KZ","qrcode":"A face"})");
    const time_t expiry = std::time(nullptr) + 7200;
    const std::string address = player.url + "/qr/" + player.newest("id") + ".png";
    backend.next(loginAnswer("7", R"(,"user_name":"Zoe \u2603 Jones","picture_url":")" + address +
                                      R"(","token_expire_time":)" + std::to_string(expiry)));
    char until[64];
    std::strftime(until, sizeof until, "Until %Y-%m-%d %H:%M:%S", std::localtime(&expiry));
    keep("start");
    press("s");
    await("Zoe ? Jones", kLarge);
    await("openid-7");
    await("Signed in through Steam");
    await(until);
    waitUntil("the player's picture", [&] { return scan() == "A face"; });
    press("l");
    await("Sign in to play", kLarge);
    backend.waitForRequest("auth/logout");
}

TEST_F(Game, PlayerScansFernosCodeAndIsIn) {
    const Session session = showCode("Ferno", "f");
    keep("qrcode");
    player.press(session.at("id"), "confirm");
    await("Signed in through Ferno");
    EXPECT_EQ(scan(), "");
    keep("player");
}

TEST_F(Game, PlayerScansKZsCodeAndIsIn) {
    player.press(showCode("KZ", "k").at("id"), "confirm");
    await("Signed in through KZ");
}

TEST_F(Game, SaysWhatWentWrongAndTriesAgain) {
    player.press(showCode("Ferno", "f").at("id"), "deny");
    vesk::BaseRet failed;
    failed.retCode = 9999;
    failed.thirdCode = 10009;
    const vesk_advice advice = vesk::describe(failed);
    std::istringstream sentence(std::string("It did not work: ") + advice.meaning);
    for (std::string word; sentence >> word;) {
        await(word);
    }
    EXPECT_TRUE(isShown("(9999,"));
    keep("failure");
    player.press(showCode("Ferno", "f", 2).at("id"), "confirm");
    await("Signed in through Ferno");
    EXPECT_FALSE(isShown("work:"));
}

TEST_F(Game, SaysThatALoginHasExpiredAndLetsThePlayerLeave) {
    const time_t expiry = std::time(nullptr) + 5;
    backend.next(loginAnswer("7", R"(,"token_expire_time":)" + std::to_string(expiry)));
    press("s");
    await("Signed in through Steam");
    await("Expired: was in through Steam");
    press("l");
    await("Sign in to play", kLarge);
    EXPECT_FALSE(isShown("work:"));
}

TEST_F(Game, GoesBackByKeyAndByMouse) {
    showCode("Ferno", "f");
    press("Escape");
    await("Sign in to play", kLarge);
    EXPECT_EQ(scan(), "");
    EXPECT_FALSE(isShown("work:"));
    showCode("Ferno", "f", 2);
    click(await("Back"));
    click(await("Steam"));
    await("Signed in through Steam");
    waitUntil("the graph of a hundred frames", [&] {
        const std::vector<uint8_t> screen = look();
        int frames = 0;
        for (int x = 420; x < 900; x += 2) {
            frames += screen[3 * (565 * kWidth + x) + 2] > 100 ? 1 : 0;
        }
        return frames > 100;
    });
}

} // namespace
} // namespace vesk::test
