#include "flow/unloadtest.h"
#include "support/messenger.h"
#include "support/waituntil.h"

namespace vesk::test {
namespace {

struct KZUnload : Unload {
    const Messenger kz{game, "kz", "KZOpenSDK.dll"};

    void showCode(const std::string& settings) {
        kz.script(settings + "on_qrcode=10:info:1:u\non_late=0:result:0:3,100:result:0:3\n");
        sdk.login("KZ");
        observer.nextQrCode();
    }

    void expectComponentGone() {
        waitUntil("the component to go",
                  [this] { return !kz.componentLines("\"unloaded\":true").empty(); });
    }
};

TEST_F(KZUnload, EventsThatComeLaterFindNobody) {
    showCode("late_event=1\n");
    unInstall();
    expectGone(seconds(5));
    expectComponentGone();
    EXPECT_TRUE(backend.requests("auth/login").empty());
}

TEST_F(KZUnload, EventsOnTheirWayFindTheirListener) {
    showCode("late_event=2\n");
    unInstall();
    expectGone(seconds(5));
    expectComponentGone();
    EXPECT_TRUE(backend.requests("auth/login").empty());
}

TEST_F(KZUnload, WhileTheComponentStarts) {
    kz.script("initialize_ms=700\n");
    std::thread login([this] { sdk.login("KZ"); });
    waitUntil("the component", [this] { return !kz.componentLines("Initialize").empty(); });
    unInstall();
    EXPECT_TRUE(sdk.isLoaded()) << "the game's other thread is still in it";
    login.join();
    expectGone(seconds(5));
    expectComponentGone();
}

} // namespace
} // namespace vesk::test
