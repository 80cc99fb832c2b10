#include <atomic>
#include <cstddef>
#include <gmock/gmock.h>
#include <memory>
#include <thread>

#include "support/files.h"
#include "support/gametest.h"
#include "support/waituntil.h"
#include "vesk/vesk_mainloop.h"

namespace vesk::test {
namespace {

/// Counts what comes to one C observer; never deleted, as the SDK's threads may outlive a case.
struct Counter {
    std::atomic<int> logins{0};
    std::atomic<int> bases{0};
    std::atomic<int> realNames{0};
    std::string userName;

    vesk_login_observer observer() {
        return {sizeof(vesk_login_observer), this,
                [](const vesk_login_ret* ret, void* user) {
                    static_cast<Counter*>(user)->userName = ret->user_name;
                    static_cast<Counter*>(user)->realNames += ret->real_name_auth;
                    ++static_cast<Counter*>(user)->logins;
                },
                [](const vesk_base_ret*, void* user) { ++static_cast<Counter*>(user)->bases; },
                nullptr};
    }
};

class CInterface : public GameTest {
protected:
    inline static Counter& counter = *new Counter;
    vesk_login_observer cObserver = counter.observer();
};

TEST_F(CInterface, ObserverIsReadAsFarAsItsSizeCoversAndTheLastOneWins) {
    cObserver.struct_size = offsetof(vesk_login_observer, on_base) - 1;
    EXPECT_EQ(vesk_set_login_observer(&cObserver), 0);
    cObserver.struct_size = offsetof(vesk_login_observer, on_qr_code) - 1;
    EXPECT_EQ(vesk_set_login_observer(&cObserver), 1);
    vesk_logout("", "", 0);
    EXPECT_EQ(counter.bases, 0);
    cObserver.struct_size = sizeof cObserver + 800; // of a newer header
    EXPECT_EQ(vesk_set_login_observer(&cObserver), 1);
    VESKLogin::Logout("", "", false);
    EXPECT_EQ(counter.bases, 1);
    // The last one wins, whatever its language.
    start();
    vesk_logout("", "", 0);
    vesk_set_login_observer(&cObserver);
    vesk_set_login_observer(nullptr);
    vesk_logout("", "", 0);
    EXPECT_EQ(observer.baseCount(), 1u);
    EXPECT_EQ(counter.bases, 1);
}

TEST_F(CInterface, AfterUninstallNothingIsDeliveredAndEachCallIsOneLogLine) {
    backend.next({"auth/login", "{}", 200, 300});
    vesk_set_login_observer(&cObserver);
    vesk_login("Steam", "", "", "");
    backend.waitForRequest("auth/login");
    std::thread atOnce(&vesk_uninstall);
    vesk_uninstall();
    atOnce.join();
    waitForLogLine("login observer is null");
    waitForLogLine("UnInstall vesk dll");
    const size_t lines = game.logLines("");
    EXPECT_EQ(vesk_set_login_observer(&cObserver), 0);
    vesk_login("Steam", "", "", "");
    vesk_auto_login();
    vesk_logout("", "", 0);
    vesk_login_ret* held = nullptr;
    EXPECT_EQ(vesk_get_login_ret(&held), 0);
    EXPECT_EQ(held, nullptr);
    VESKLoginRet ret;
    EXPECT_FALSE(VESKLogin::GetLoginRet(ret));
    vesk_uninstall();
    EXPECT_EQ(counter.logins + counter.bases, 0);
    const auto log = readSdkLog(game.path() / "veskrecord.log");
    size_t line = lines;
    for (const char* method : {"SetLoginObserver", "Login", "AutoLogin", "Logout", "GetLoginRet",
                               "GetLoginRet", "UnInstall"}) {
        ASSERT_LT(line, log.size());
        EXPECT_NE(log[line].find(std::string("VESKLogin::") + method + ","), std::string::npos);
        EXPECT_NE(log[line++].find("the SDK has ended"), std::string::npos);
    }
    EXPECT_EQ(line, log.size());
    EXPECT_EQ(game.logLines("UnInstall platform sdk"), 1u);
    EXPECT_STREQ(vesk_version(), "5.0.000.0005"); // its number is a game's in tests/package
}

TEST_F(CInterface, TextsAreTheBackendsUtf8AndACopyOutlivesTheLogin) {
    backend.next(loginAnswer("A", R"(,"user_name":"Zo\u00eb 玩家 🎮","pf_key":"key-A")"));
    vesk_set_login_observer(&cObserver);
    vesk_login("Steam", nullptr, nullptr, nullptr);
    waitUntil("the login", [] { return counter.logins == 1; });
    EXPECT_EQ(counter.userName, "Zo\xC3\xAB \xE7\x8E\xA9\xE5\xAE\xB6 \xF0\x9F\x8E\xAE");
    vesk_login_ret* held = nullptr;
    EXPECT_EQ(vesk_get_login_ret(&held), 1);
    vesk_logout("", "", 1);
    EXPECT_EQ(vesk_get_login_ret(nullptr), 1) << "the channel's alone";
    vesk_logout("", "", 0);
    EXPECT_EQ(vesk_get_login_ret(nullptr), 0);
    EXPECT_EQ(held->user_name, counter.userName);
    EXPECT_STREQ(held->openid, "openid-A");
    EXPECT_STREQ(held->pf_key, "key-A");
    vesk_login_ret_free(held);
    backend.next(loginAnswer("B", R"(,"need_name_auth":true)"));
    vesk_login("Steam", "", "", "");
    waitUntil("the refusal", [] { return counter.logins == 2; });
    EXPECT_EQ(counter.realNames, 1);
}

TEST_F(CInterface, FunctionAndUserBelongTogetherWhileObserversAreReplaced) {
    static std::atomic<int> calls{0};
    static std::atomic<int> mixed{0};
    static int odd, even;
    const vesk_login_observer observers[] = {
        {sizeof cObserver, &even, nullptr,
         [](const vesk_base_ret*, void* user) { mixed += user != &even, ++calls; }, nullptr},
        {sizeof cObserver, &odd, nullptr,
         [](const vesk_base_ret*, void* user) { mixed += user != &odd, ++calls; }, nullptr}};
    vesk_set_login_observer(observers);
    std::thread delivering([] {
        for (int i = 0; i < 100; ++i) {
            vesk_logout("", "", 0);
        }
    });
    for (int i = 0; calls < 100; ++i) {
        vesk_set_login_observer(&observers[i % 2]);
    }
    delivering.join();
    EXPECT_EQ(mixed, 0);
}

TEST_F(CInterface, AutoLoginIsAnsweredAndWhatThePlatformLacksIsNot) {
    vesk_set_login_observer(&cObserver);
    vesk_bind("Steam", "", "", "");
    vesk_login_with_confirm_code(1, "", "");
    vesk_query_user_info();
    vesk_reset_guest();
    EXPECT_EQ(vesk_switch_user(1), 0);
    EXPECT_EQ(counter.logins + counter.bases, 0);
    vesk_auto_login(); // nothing is stored
    EXPECT_EQ(counter.logins, 1);
}

TEST_F(CInterface, AdviceIsOnTheMoreExactOfTwoCodesAlsoAfterUninstall) {
    vesk_uninstall();
    const struct {
        int32_t retCode, thirdCode, known, cause;
        int64_t retryAfter; ///< negative: never
        const char* causeName;
        const char* remedy;
    } rows[] = {
        {VESK_SUCCESS, 0, 1, VESK_CAUSE_NONE, -1, "none", ""},
        {4, 77, 1, VESK_CAUSE_CONFIGURATION, -1, "configuration", "cacert.pem"},
        {4, 94, 1, VESK_CAUSE_NETWORK, 10000, "network", "look at thirdCode"},
        {4, 503, 1, VESK_CAUSE_BACKEND, 30000, "backend", "operator"},
        {5, -1, 1, VESK_CAUSE_BACKEND, -1, "backend", "what thirdCode means"},
        {5, 12, 1, VESK_CAUSE_BACKEND, -1, "backend", "what thirdCode means"},
        {5, 4007, 1, VESK_CAUSE_CLOCK, -1, "clock", "clock"},
        {17, -1, 1, VESK_CAUSE_CHANNEL_COMPONENT, -1, "channel component", "Steam"},
        {VESK_LOGIN_CANCELLED, -1, 1, VESK_CAUSE_PLAYER, 0, "player", "offer a login"},
        {VESK_UNKNOWN_CHANNEL, 77, 1, VESK_CAUSE_PROGRAMMING, -1, "programming", "KZ, Ferno"},
        {12345, 77, 0, VESK_CAUSE_PROGRAMMING, -1, "programming", "look at where"},
    };
    for (const auto& row : rows) {
        vesk_advice advice = {};
        EXPECT_EQ((advice.struct_size = 39, vesk_describe(row.retCode, 0, &advice)), 0);
        EXPECT_EQ(advice.meaning, nullptr);
        advice.struct_size = sizeof advice + 8;
        EXPECT_EQ(vesk_describe(row.retCode, row.thirdCode, &advice), row.known) << row.retCode;
        EXPECT_EQ(advice.cause, row.cause) << row.retCode << ", " << row.thirdCode;
        EXPECT_STREQ(advice.cause_name, row.causeName);
        EXPECT_EQ(advice.can_retry ? advice.retry_after_ms : int64_t{-1}, row.retryAfter);
        EXPECT_STRNE(advice.meaning, "");
        EXPECT_THAT(advice.remedy, testing::HasSubstr(row.remedy));
    }
    EXPECT_EQ(vesk_describe(0, 0, nullptr), 0);
}

} // namespace
} // namespace vesk::test
