#include <thread>

#include "support/unloadtest.h"

namespace vesk::test {
namespace {

/// The game leaves at a bad moment, and the component is unkind: whatever it does, nobody crashes,
/// it is stopped once, and what it may still call is there.
struct ComponentLife : Unload {
    /// Logs in until the component has been called for @p call, and leaves.
    void leaveDuring(const Messenger& component, const char* channel, const char* call) {
        sdk.login(channel);
        waitUntil(call, [&] { return !component.componentLines(call).empty(); });
        unInstall();
    }

    /// The SDK gives its component back, or says that it cannot.
    void expectEnd(bool stays) {
        waitUntil(
            "the end", [&] { return game.logLines(stays ? kStays : kRests) == 1; }, seconds(15));
        if (stays) {
            EXPECT_TRUE(sdk.isLoaded());
        } else {
            expectGone(seconds(5));
            EXPECT_EQ(game.logLines(kStays), 0u);
        }
        EXPECT_EQ(heard(), delivered);
        EXPECT_TRUE(backend.requests("auth/login").empty());
    }

    static constexpr const char* kStays = "the component may still call back: it stays loaded";
    static constexpr const char* kRests = "the component has come to rest";
};

struct FernoLife : ComponentLife {
    void expectStop() {
        waitUntil("the stop", [&] { return ferno.componentLines("frlogin_uninit").size() == 1; });
    }

    const Messenger ferno{game, "ferno", "frlogin.dll"};
};

TEST_F(FernoLife, UnInstallWhileAnotherThreadLogsOutLetsItReturn) {
    ferno.script("keep_pointer=1\n");
    sdk.login("Ferno");
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    backend.clear();
    ferno.script("keep_pointer=1\ncall_ms=4000\n");
    std::thread logout([this] { sdk.logout(); });
    waitUntil("the logout", [this] { return !ferno.componentLines("req_logout").empty(); });
    unInstall();
    logout.join();
    expectStop();
    expectEnd(false);
}

TEST_F(FernoLife, UnInstallDuringTheStartWins) {
    ferno.script("keep_pointer=1\ninit_ms=4000\non_init=4100:qr:u,0:success\n");
    leaveDuring(ferno, "Ferno", "frlogin_init");
    expectStop();
    expectEnd(false);
    EXPECT_TRUE(ferno.componentLines("frlogin_req_qrcode").empty());
}

TEST_F(FernoLife, CallbacksAfterTheEndFindTheirTableAndReachNobody) {
    ferno.script("keep_pointer=1\non_qrcode=10:qr:u\n"
                 "on_late=300:qr:u,0:success,2000:kickout:1,2500:success\n");
    leaveDuring(ferno, "Ferno", "\"callback\":\"qr\"");
    waitUntil("the last", [this] { return ferno.componentLines("\"callback\"").size() == 5; });
    expectEnd(true);
    EXPECT_EQ(game.logLines("a callback after the end, it reaches nobody"), 4u);
}

TEST_F(FernoLife, ThreadThatGoesOnAfterTheEndFindsItsFile) {
    ferno.script("keep_pointer=1\nlate_pinned=0\non_qrcode=10:qr:u\non_late=300:success\n");
    leaveDuring(ferno, "Ferno", "\"callback\":\"qr\"");
    waitUntil("the callback", [this] { return !ferno.componentLines("\"success\"").empty(); });
    expectEnd(false);
}

TEST_F(FernoLife, ComponentThatCannotBeStoppedStays) {
    ferno.install("nouninit");
    ferno.script("keep_pointer=1\non_qrcode=10:qr:u,1500:success\n");
    leaveDuring(ferno, "Ferno", "\"callback\":\"qr\"");
    expectEnd(true);
    waitUntil("the callback", [this] { return !ferno.componentLines("\"success\"").empty(); });
    EXPECT_EQ(game.logLines("a callback after the end, it reaches nobody"), 1u);
}

TEST_F(FernoLife, LibraryThatTheGameFreesStaysForTheComponent) {
    ferno.script("keep_pointer=1\non_qrcode=10:qr:u,1000:success\n");
    sdk.login("Ferno");
    observer.nextQrCode();
    sdk.close();
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
}

TEST_F(FernoLife, LengthThatCannotBeIsNoLength) {
    ferno.script("length=4294967295\non_qrcode=10:qr:u,10:success\n");
    backend.next({"auth/login", R"({"ret":7,"msg":"who?"})"});
    sdk.login("Ferno");
    EXPECT_EQ(observer.nextQrCode().ret.qrCodeUrl, "");
    EXPECT_EQ(observer.nextLogin().ret.thirdCode, 7);
    EXPECT_EQ(game.logLines("a text of 4294967295 bytes cannot be, it is taken as empty"), 4u);
}

using SteamLife = ComponentLife;

TEST_F(SteamLife, UnInstallWhileACallIsInsideShutsSteamDownAfterIt) {
    game.simulate("call_ms=400\nticket_ms=4000\n");
    std::thread login([this] { sdk.login("Steam"); });
    waitUntil("Steam's start", [this] { return game.steamCalls("Init") == 1; });
    std::thread other([this] { sdk.login("Steam"); });
    waitUntil("a call", [this] { return game.steamCalls("ISteamUser_GetAuthSessionTicket") > 0; });
    unInstall();
    EXPECT_EQ(game.steamCalls("Shutdown"), 0u);
    login.join();
    other.join();
    waitUntil("the shutdown", [this] { return game.steamCalls("Shutdown") == 1; });
    EXPECT_EQ(game.steamCalls("Init"), 1u);
    expectEnd(false);
}

TEST_F(SteamLife, UnInstallDuringTheStartWins) {
    game.simulate("call_ms=400\n");
    std::thread login([this] { sdk.login("Steam"); });
    waitUntil("Steam's start", [this] { return game.steamCalls("IsSteamRunning") == 1; });
    unInstall();
    EXPECT_EQ(game.steamCalls("Shutdown"), 0u);
    login.join();
    EXPECT_EQ(game.steamCalls("Shutdown"), 1u);
    EXPECT_EQ(game.steamCalls("ISteamUser_GetSteamID"), 0u);
    expectEnd(false);
}

using LibraryClose = Unload;

// A game that frees the library without UnInstall: what is still under way keeps the code.
TEST_F(LibraryClose, LetsWhatIsUnderWayEnd) {
    const struct {
        const char* name;
        int delayMs;
        bool answered; ///< before the library is freed
    } rows[] = {
        {"a request in flight", 500, false},
        {"a timer asleep", 0, true},
    };
    sdk.close();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const LoadedSdk another(game.path());
        another.setObserver(&observer);
        backend.next(loginAnswer("A", "", row.delayMs));
        another.login("Steam");
        VESKLoginRet ret = row.answered ? observer.nextLogin().ret : VESKLoginRet();
        another.close();
        ret = row.answered ? ret : observer.nextLogin().ret;
        EXPECT_EQ(ret.retCode, VESKError::SUCCESS);
    }
    std::printf("\nfaults: LibraryClose.LetsWhatIsUnderWayEnd: %zu rows\n", std::size(rows));
}

} // namespace
} // namespace vesk::test
