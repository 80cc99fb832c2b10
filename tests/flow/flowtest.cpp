#include "flow/flowtest.h"

#include "support/waituntil.h"

namespace vesk::test {

void FlowTest::start() {
    if (!mStarted) {
        VESKLogin::SetLoginObserver(&observer);
        mStarted = true;
    }
}

VESKLoginRet FlowTest::login(const char* extraJson) {
    start();
    VESKLogin::Login("Steam", "", "", extraJson);
    return observer.nextLogin().ret;
}

VESKBaseRet FlowTest::logout(const char* channel, bool channelOnly) {
    start();
    VESKLogin::Logout(channel, "", channelOnly);
    return observer.nextBase().ret;
}

void FlowTest::waitForLogLine(const std::string& text) const {
    waitUntil("the log line " + text, [&] { return game.logLines(text) > 0; });
}

Answer loginAnswer(const std::string& id, const std::string& more) {
    return {"auth/login", R"({"ret":0,"openid":"openid-)" + id + R"(","uid":"uid-)" + id +
                              R"(","token":"token-)" + id + "\"" + more + "}"};
}

} // namespace vesk::test
