#include <atomic>

#include "support/unloadtest.h"

namespace vesk::test {
namespace {

TEST_F(Unload, WhileTheTimerSleeps) {
    sdk.login("Steam");
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    VESKLoginRet held;
    EXPECT_TRUE(sdk.getLoginRet(held));
    EXPECT_NE(held.token, "");
    waitForLogLine("timer is waiting");
    unInstall();
    expectGone(seconds(2));
    EXPECT_EQ(game.logLines("UnInstall platform sdk"), 1u);
    EXPECT_EQ(game.steamCalls("Shutdown"), 1u);
}

TEST_F(Unload, WithRequestsInFlightAndQueued) {
    std::this_thread::sleep_for(seconds(3)); // then the requests share what they keep of TLS
    sdk.login("Steam");
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    backend.clear();
    for (int i = 0; i < 6; ++i) { // four at once
        backend.next({"auth/login", "{}", 200, 3000});
        sdk.login("Steam");
    }
    backend.waitForRequest("auth/login", 4);
    unInstall();
    if (kSdkUnloadsItself) {
        const LoadedSdk again(game.path()); // the requests' threads are still in it
        again.login("Steam");
        EXPECT_EQ(game.logLines("the SDK has ended"), 1u);
        again.close();
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
    std::thread first([this] { sdk.unInstall(); });
    waitForLogLine("UnInstall platform sdk");
    unInstall();
    EXPECT_EQ(stage, 2) << "nothing of the observer may run any more";
    first.join();
    expectGone(seconds(5));
}

TEST_F(Unload, WhileTheGameFreesItAsWell) {
    static ActingObserver& acting = *new ActingObserver;
    static std::atomic<bool> ended{false};
    const struct {
        const char* name;
        int references, answerMs, freedAfterMs;
        bool insideAMethod;
    } rows[] = {
        {"at once", 1, 0, 0, false},
        {"20 ms later", 1, 0, 20, false},
        {"just when it goes by itself", 1, 0, 100, false},
        {"200 ms later", 1, 0, 200, false},
        {"with a request in flight", 1, 500, 0, false},
        {"inside an observer method on another thread", 1, 1, 0, true},
        {"twice, as it was loaded", 2, 0, 0, false},
        {"three times, as it was loaded, with a request in flight", 3, 300, 60, false},
    };
    sdk.close();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        LoadedSdk another(game.path());
        for (int i = 1; i < row.references; ++i) {
            another = LoadedSdk(game.path());
        }
        ended = false;
        acting.onLogin = [&](const VESKLoginRet&) {
            another.unInstall();
            ended = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        };
        another.setObserver(&acting);
        const size_t before = backend.requests("auth/login").size();
        if (row.answerMs != 0 && kSdkUnloadsItself) {
            backend.next({"auth/login", "{}", 200, row.answerMs});
            another.login("Steam");
            backend.waitForRequest("auth/login", before + 1);
        }
        if (row.insideAMethod && kSdkUnloadsItself) {
            waitUntil("UnInstall", [] { return ended.load(); });
        } else {
            another.unInstall();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(row.freedAfterMs));
        std::thread([&] {
            for (int i = 0; i < row.references; ++i) {
                another.close();
            }
        }).join();
        another.leave(seconds(5));
    }
}

} // namespace
} // namespace vesk::test
