#include <atomic>

#include "flow/unloadtest.h"
#include "support/actingobserver.h"
#include "support/messenger.h"
#include "support/waituntil.h"

namespace vesk::test {
namespace {

TEST_F(Unload, AfterAVisit) {
    sdk.login("Steam");
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    VESKLoginRet held;
    EXPECT_TRUE(sdk.getLoginRet(held));
    EXPECT_NE(held.token, "");
    sdk.logout();
    EXPECT_EQ(observer.nextBase().ret.retCode, VESKError::SUCCESS);
    unInstall();
    expectGone(seconds(5));
    EXPECT_EQ(game.logLines("UnInstall platform sdk"), 1u);
    EXPECT_EQ(game.steamCalls("Shutdown"), 1u);
}

TEST_F(Unload, WithoutAnyLogin) {
    unInstall();
    expectGone(seconds(2));
}

TEST_F(Unload, Twice) {
    sdk.unInstall();
    sdk.unInstall();
    sdk.leave(seconds(2));
    EXPECT_EQ(game.logLines("UnInstall vesk dll"), 2u);
}

TEST_F(Unload, WhileTheTimerSleeps) {
    sdk.login("Steam");
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    waitUntil("the timer", [this] { return game.logLines("timer is waiting") == 1; });
    unInstall();
    expectGone(seconds(2));
}

TEST_F(Unload, WithRequestsInFlightAndQueued) {
    for (int i = 0; i < 6; ++i) { // four at once
        backend.next({"auth/login", "{}", 200, 3000});
        sdk.login("Steam");
    }
    backend.waitForRequest("auth/login", 4);
    unInstall();
    if (kSdkUnloadsItself) {
        EXPECT_TRUE(sdk.isLoaded()) << "the requests' threads are still in it";
    }
    expectGone(seconds(8));
    EXPECT_EQ(backend.requests("auth/login").size(), 4u);
}

TEST_F(Unload, InsideAnObserverMethod) {
    static ActingObserver& acting = *new ActingObserver;
    static std::atomic<bool> returned{false};
    acting.onLogin = [this](const VESKLoginRet&) {
        unInstall();
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        EXPECT_TRUE(sdk.isLoaded());
        returned = true;
    };
    sdk.setObserver(&acting);
    sdk.login("Steam");
    waitUntil("the observer method", [] { return returned.load(); });
    expectGone(seconds(5));
}

TEST_F(Unload, WhileAnObserverMethodRunsOnAnotherThread) {
    static ActingObserver& acting = *new ActingObserver;
    static std::atomic<int> stage{0};
    acting.onLogin = [](const VESKLoginRet&) {
        stage = 1;
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        stage = 2;
    };
    sdk.setObserver(&acting);
    sdk.login("Steam");
    waitUntil("the observer method", [] { return stage == 1; });
    unInstall();
    EXPECT_EQ(stage, 2) << "nothing of the observer may run any more";
    expectGone(seconds(5));
}

TEST_F(Unload, WhileFernoShowsACode) {
    const Messenger ferno(game, "ferno", "frlogin.dll");
    ferno.script("on_qrcode=10:qr:u,300:success,10:success");
    sdk.login("Ferno");
    observer.nextQrCode();
    unInstall();
    expectGone(seconds(15));
    EXPECT_EQ(ferno.componentLines("frlogin_uninit").size(), 1u);
    EXPECT_TRUE(backend.requests("auth/login").empty());
}

} // namespace
} // namespace vesk::test
