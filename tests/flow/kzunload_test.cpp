#include "support/unloadtest.h"

namespace vesk::test {
namespace {

struct KZUnload : Unload {
    const Messenger kz{game, "kz", "KZOpenSDK.dll"};

    void showCode(const std::string& settings) {
        kz.script(settings + "on_qrcode=10:info:1:u\non_late=0:result:0:3,100:result:0:3\n");
        sdk.login("KZ");
        observer.nextQrCode();
    }

    void leave() {
        unInstall();
        expectEnd();
    }

    void expectEnd() {
        expectGone(seconds(15));
        waitUntil("the component to go", [this] {
            return !kz.componentLines("{\"objects\":0,\"unloaded\":true}").empty();
        });
    }
};

TEST_F(KZUnload, EventsThatComeLaterFindNobody) {
    showCode("late_event=1\nkeep_sink=1\n");
    leave();
    EXPECT_EQ(kz.componentLines("\"event\":3").size(), 2u);
    EXPECT_TRUE(backend.requests("auth/login").empty());
}

TEST_F(KZUnload, EventsOnTheirWayFindTheirListener) {
    showCode("late_event=2\n");
    leave();
    EXPECT_TRUE(backend.requests("auth/login").empty());
}

TEST_F(KZUnload, WhileTheComponentStarts) {
    kz.script("initialize_ms=700\n");
    std::thread login([this] { sdk.login("KZ"); });
    waitUntil("the component", [this] { return !kz.componentLines("Initialize").empty(); });
    unInstall();
    EXPECT_TRUE(sdk.isLoaded()) << "the game's other thread is still in it";
    login.join();
    expectEnd();
}

TEST_F(KZUnload, WhileARequestIsInsideStopsTheComponentAfterIt) {
    kz.script("call_ms=4000\n");
    std::thread login([this] { sdk.login("KZ"); });
    waitUntil("the request", [this] { return !kz.componentLines("GetGenerateSerial").empty(); });
    unInstall();
    EXPECT_TRUE(kz.componentLines("UnInitialize").empty());
    login.join();
    expectEnd();
    EXPECT_EQ(kz.componentLines("UnInitialize").size(), 1u);
    EXPECT_TRUE(kz.componentLines("inside").empty());
}

TEST_F(KZUnload, WithAListenerThatTheComponentNeverGivesBack) {
    showCode("keep_sink=2\nlate_event=2\nlate_ms=300\n");
    unInstall();
    waitForLogLine("a callback after the end", 2);
    EXPECT_TRUE(sdk.isLoaded());
    EXPECT_TRUE(backend.requests("auth/login").empty());
}

TEST_F(KZUnload, OneObjectForTheProcessIsStartedOnceWhoeverAsks) {
    kz.script("process_wide=1\ninitialize_ms=700\n");
    std::thread other([this] { sdk.login("KZ"); });
    sdk.login("KZ");
    other.join();
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    EXPECT_EQ(kz.componentLines("\"Initialize\"").size(), 1u);
    EXPECT_TRUE(kz.componentLines("UnInitialize").empty());
    unInstall();
    expectGone(seconds(15));
}

} // namespace
} // namespace vesk::test
