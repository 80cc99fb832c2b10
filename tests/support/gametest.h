#ifndef VESK_TESTS_SUPPORT_GAMETEST_H
#define VESK_TESTS_SUPPORT_GAMETEST_H

#include <gtest/gtest.h>
#include <string>

#include "support/backendcontrol.h"
#include "support/files.h"
#include "support/gamefolder.h"
#include "support/recordingobserver.h"
#include "support/waituntil.h"
#include "vesk/vesklogin.h"

namespace vesk::test {

using namespace Braxel::VESK;

/// A game in a folder of its own with a dev backend. Each case has its own process; arrange the
/// game's folder first, then call start(), login() or logout().
class GameTest : public ::testing::Test {
protected:
    /// Sets the observer.
    void start() {
        if (!mStarted) {
            VESKLogin::SetLoginObserver(&observer);
            mStarted = true;
        }
    }
    void startLogin(const std::string& channel = "Steam", const std::string& extraJson = "") {
        start();
        VESKLogin::Login(channel.c_str(), "", "", extraJson.c_str());
    }
    /// Logs in and waits for the result.
    VESKLoginRet login(const std::string& channel = "Steam", const std::string& extraJson = "") {
        startLogin(channel, extraJson);
        return observer.nextLogin().ret;
    }
    VESKLoginRet autoLogin() {
        start();
        VESKLogin::AutoLogin();
        return observer.nextLogin().ret;
    }
    /// Logs out and waits for the result.
    VESKBaseRet logout(const char* channel = "", bool channelOnly = false) {
        start();
        VESKLogin::Logout(channel, "", channelOnly);
        return observer.nextBase().ret;
    }

    static bool isHeld() {
        VESKLoginRet ret;
        return VESKLogin::GetLoginRet(ret);
    }
    /// The login that is held; there has to be one.
    static VESKLoginRet held() {
        VESKLoginRet ret;
        EXPECT_TRUE(VESKLogin::GetLoginRet(ret));
        return ret;
    }

    /// Waits until the SDK has logged so many lines that hold @p text.
    void waitForLogLine(const std::string& text, size_t count = 1) const {
        waitUntil("the log line " + text, [&] { return game.logLines(text) >= count; });
    }

    const GameFolder game;
    BackendControl backend{environment("VESK_TEST_CONTROL_URL")};
    // Never deleted: threads of the SDK may outlive the case.
    inline static RecordingObserver& observer = *new RecordingObserver;

private:
    bool mStarted = false;
};

/// A game that logs in through a messenger; its component is simulated.
class MessengerTest : public GameTest, protected Messenger {
protected:
    MessengerTest(const char* name, const char* simulator, const char* fileName)
        : Messenger(game, simulator, fileName), channel(name) {}

    void startLogin() { GameTest::startLogin(channel); }
    VESKLoginRet scanAndLogin() { return login(channel); }

    const std::string channel;
};

/// A good answer to "auth/login"; @p more is further members, with a leading comma.
inline Answer loginAnswer(const std::string& id, const std::string& more = "", int delayMs = 0) {
    return {"auth/login",
            R"({"ret":0,"openid":"openid-)" + id + R"(","uid":"uid-)" + id +
                R"(","token":"token-)" + id + "\"" + more + "}",
            200, delayMs};
}

} // namespace vesk::test

#endif
