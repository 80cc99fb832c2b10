#include <atomic>
#include <ctime>
#include <future>
#include <gtest/gtest.h>
#include <stdexcept>

#include "support/backendcontrol.h"
#include "support/files.h"
#include "support/gamefolder.h"
#include "support/waituntil.h"
#include "vesk/vesk.hpp"

namespace vesk::test {
namespace {

/// A game that has vesk.hpp and nothing else of the SDK's C++.
class Wrapper : public ::testing::Test {
protected:
    const GameFolder game;
    BackendControl backend{environment("VESK_TEST_CONTROL_URL")};
};

TEST_F(Wrapper, CarriesAWholeVisit) {
    backend.next({"auth/login",
                  R"({"ret":0,"openid":"o","uid":"u","token":"t","msg":"m","first":1,"gender":2,)"
                  R"("token_expire_time":4102444800,"reg_channel_dis":"r","user_name":"n",)"
                  R"("birthdate":"b","picture_url":"p","pf":"f","pf_key":"k"})"});
    const Messenger ferno(game, "ferno", "frlogin.dll");
    ferno.script("on_qrcode=10:qr:https://qr/1,10:success");
    std::promise<LoginRet> loggedIn;
    std::promise<BaseRet> loggedOut;
    std::promise<QrCodeRet> shown;
    const Observer observer({[&](const LoginRet& ret) { loggedIn.set_value(ret); },
                             [&](const BaseRet& ret) { loggedOut.set_value(ret); },
                             [&](const QrCodeRet& ret) { shown.set_value(ret); }});
    login("Ferno");
    const QrCodeRet code = shown.get_future().get();
    EXPECT_EQ(code.qrCodeUrl + code.channel, "https://qr/1Ferno");
    EXPECT_EQ(code.channelID * 1000 + code.methodNameID, 1122);
    const LoginRet ret = loggedIn.get_future().get();
    EXPECT_EQ(ret.retCode, VESK_SUCCESS);
    EXPECT_EQ(ret.retMsg + ret.thirdMsg + ret.channel, "SuccessmFerno");
    EXPECT_EQ(ret.openid + ret.token + ret.regChannelDis + ret.userName, "otrn");
    EXPECT_EQ(ret.birthdate + ret.pictureUrl + ret.pf + ret.pfKey, "bpfk");
    EXPECT_EQ(ret.firstLogin * 100 + ret.gender * 10000 + ret.channelID, 20101);
    EXPECT_EQ(ret.tokenExpire, 4102444800);
    LoginRet held;
    EXPECT_TRUE(getLoginRet(held));
    EXPECT_EQ(held.openid, "o");
    logout();
    EXPECT_EQ(loggedOut.get_future().get().methodNameID, 117);
    EXPECT_FALSE(getLoginRet(held));
    EXPECT_EQ(held.retCode, VESK_NO_STORED_LOGIN);
    EXPECT_STREQ(describe(held).remedy, "log in");
}

TEST_F(Wrapper, EndOfAnObserverWaitsForItsCallback) {
    static std::atomic<int> stage{0};
    Callbacks callbacks;
    callbacks.onLogin = [](const LoginRet&) {
        stage = 1;
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        stage = 2;
    };
    auto observer = std::make_unique<Observer>(callbacks);
    login("Steam");
    waitUntil("the callback", [] { return stage == 1; });
    observer.reset();
    EXPECT_EQ(stage, 2);
}

TEST_F(Wrapper, CallbackMayThrowAndMayEndItsObserver) {
    static int calls = 0;
    static std::unique_ptr<Observer> observer;
    Callbacks callbacks;
    callbacks.onBase = [](const BaseRet&) {
        if (++calls == 2) {
            observer.reset();
        }
        throw std::runtime_error("of the game");
    };
    observer = std::make_unique<Observer>(callbacks);
    for (int i = 0; i < 3; ++i) {
        logout(); // nothing is held: answered inside the call
    }
    EXPECT_EQ(calls, 2);
    uninstall();
}

/// Results wait until the game takes them, every login has one answer, nothing comes after its end.
struct Loop : Wrapper {
    Loop() { ferno.script("on_qrcode=10:qr:https://qr/1"); }

    /// Polls until there were so many results: of which kind, of which call, with which code.
    static std::string next(MainLoop& loop, size_t count = 1) {
        std::string heard;
        const auto note = [&](const char* kind, uint64_t request, const std::string& text) {
            heard += kind + std::to_string(request) + ": " + text + " ";
        };
        const Overloaded visitor{
            [&](const LoginRet& ret, uint64_t n) {
                note("login ", n, std::to_string(ret.retCode));
            },
            [&](const BaseRet& ret, uint64_t n) { note("base ", n, std::to_string(ret.retCode)); },
            [&](const QrCodeRet& ret, uint64_t n) { note("code ", n, ret.qrCodeUrl); },
            [&](const Refreshed& ret, uint64_t n) {
                note("refreshed ", n, std::to_string(ret.login.retCode));
            }};
        size_t polled = 0;
        waitUntil("a result", [&] { return (polled += loop.poll(visitor)) >= count; });
        return heard;
    }
    static size_t poll(MainLoop& loop) {
        return loop.poll([](const auto&, uint64_t) {});
    }
    /// An answer to the next login.
    void answer(const std::string& more, int delayMs) {
        backend.next({"auth/login", R"({"ret":0,"openid":"o","uid":"u","token":"t")" + more + "}",
                      200, delayMs});
    }

    const Messenger ferno{game, "ferno", "frlogin.dll"};
    std::atomic<int> heard{0};
    const Observer observer{Callbacks{[this](const LoginRet&) { ++heard; }, {}, {}}};
};

TEST_F(Loop, EachCallIsAnsweredAndTheStateFollowsUntilTheScopeEnds) {
    {
        MainLoop loop;
        ASSERT_TRUE(loop.isOn());
        EXPECT_EQ(loop.state().stage, Stage::signedOut);
        login("Steam");
        EXPECT_EQ(loop.state().stage, Stage::loggingIn);
        EXPECT_EQ(next(loop), "login 1: 0 ");
        const State in = loop.state();
        LoginRet held;
        EXPECT_TRUE(getLoginRet(held));
        EXPECT_EQ(in.stage, Stage::signedIn);
        EXPECT_EQ(in.channel + std::to_string(in.request), "Steam1");
        EXPECT_EQ(in.openid, held.openid);
        EXPECT_EQ(in.tokenExpire, held.tokenExpire);
        logout();
        EXPECT_EQ(next(loop), "base 2: 0 ");
        EXPECT_TRUE(loop.waitIdle(std::chrono::seconds(3)));
        EXPECT_EQ(backend.requests("auth/logout").size(), 1u);
        EXPECT_EQ(loop.state().stage, Stage::signedOut);

        login("Ferno");
        EXPECT_EQ(next(loop), "code 3: https://qr/1 ");
        EXPECT_EQ(loop.state().stage, Stage::waitingForScan);
        EXPECT_TRUE(loop.waitIdle(std::chrono::seconds(3))) << "who waits for a scan waits";
        login("Discord");
        EXPECT_EQ(next(loop), "login 4: 10003 ");
        logout("Discord");
        EXPECT_EQ(next(loop), "base 5: 10003 ");
        login("Steam");
        EXPECT_EQ(next(loop, 2), "login 3: 10004 login 6: 0 ");
        login("Ferno");
        EXPECT_EQ(next(loop), "code 7: https://qr/1 ");
        EXPECT_TRUE(loop.cancelLogin());
        EXPECT_EQ(next(loop), "login 7: 10001 ");
        login("KZ"); // whose component is not there
        EXPECT_EQ(next(loop), "login 8: 17 ");
        login("Ferno"); // for the end of the scope
    }
    MainLoop again;
    EXPECT_EQ(again.state().stage, Stage::signedOut);
    EXPECT_EQ(poll(again), 0u);
    EXPECT_EQ(heard, 0) << "an observer has its turn afterwards";

    login("Ferno");
    uninstall();
    EXPECT_FALSE(MainLoop().isOn());
    vesk_login_state now = {};
    now.struct_size = sizeof now;
    EXPECT_EQ(vesk_state(&now) + vesk_cancel_login() + vesk_wait_idle(100), 0);
    vesk_set_login_timeout(1);
    login("Steam");
    logout();
    EXPECT_EQ(poll(again), 0u);
}

TEST_F(Loop, ALoginThatTakesTooLongEndsAndItsAnswerIsLoggedOut) {
    MainLoop loop;
    loop.setLoginTimeout(std::chrono::milliseconds(1000));
    answer("", 1500);
    login("Steam");
    EXPECT_EQ(next(loop), "login 1: 10002 ");
    EXPECT_EQ(loop.state().stage, Stage::signedOut);
    backend.waitForRequest("auth/logout");

    answer("", 1500);
    login("Steam"); // nobody looks until long after its time
    backend.waitForRequest("auth/logout", 2);
    EXPECT_EQ(next(loop), "login 2: 10002 ");
    EXPECT_EQ(loop.state().stage, Stage::signedOut);
}

TEST_F(Loop, SwitchedBackTheObserverHearsWhatIsAskedFromThenOn) {
    MainLoop loop;
    backend.next({"auth/login", "", 404, 200});
    login("Steam");
    EXPECT_EQ(vesk_queue_results(0), 1);
    EXPECT_EQ(next(loop), "login 1: 4 ");
    login("Steam");
    waitUntil("the observer", [this] { return heard == 1; });
    EXPECT_EQ(poll(loop), 0u);
}

TEST_F(Loop, AnExpiredTokenIsToldOnce) {
    MainLoop loop;
    answer(",\"token_expire_time\":" + std::to_string(std::time(nullptr) + 1), 0);
    login("Steam");
    EXPECT_EQ(next(loop), "login 1: 0 ");
    EXPECT_EQ(next(loop), "refreshed 1: 1002 ");
    EXPECT_EQ(loop.state().stage, Stage::expired);
    EXPECT_EQ(poll(loop), 0u);
}

} // namespace
} // namespace vesk::test
