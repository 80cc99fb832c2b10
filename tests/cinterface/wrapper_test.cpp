#include <atomic>
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

TEST_F(Wrapper, MainLoopHandsResultsOutWhereItIsPolledAndEndsWithItsScope) {
    const Messenger ferno(game, "ferno", "frlogin.dll");
    ferno.script("on_qrcode=10:qr:https://qr/1");
    std::string heard;
    const Observer unheard({[&](const LoginRet&) { heard += "observer "; }, {}, {}});
    {
        MainLoop loop;
        ASSERT_TRUE(loop.isOn());
        loop.setLoginTimeout(std::chrono::minutes(1));
        const auto note = [&](const char* kind, uint64_t request, const auto& text) {
            heard += kind + std::to_string(request) + " " + text + " ";
        };
        const auto nextResult = [&] {
            const Overloaded visitor{
                [&](const LoginRet& ret, uint64_t n) {
                    note("login ", n, std::to_string(ret.retCode));
                },
                [&](const BaseRet& ret, uint64_t n) {
                    note("base ", n, std::to_string(ret.methodNameID));
                },
                [&](const QrCodeRet& ret, uint64_t n) { note("code ", n, ret.qrCodeUrl); },
                [&](const Refreshed& ret, uint64_t n) { note("refreshed ", n, ret.login.token); }};
            waitUntil("a result", [&] { return loop.poll(visitor) != 0; });
        };
        login("Steam");
        EXPECT_EQ(loop.state().stage, Stage::loggingIn);
        nextResult();
        const State in = loop.state();
        EXPECT_EQ(in.stage, Stage::signedIn);
        EXPECT_EQ(in.channel + std::to_string(in.request), "Steam1");
        EXPECT_NE(in.openid, "");
        logout();
        nextResult();
        EXPECT_TRUE(loop.waitIdle(std::chrono::seconds(3)));
        login("Ferno");
        nextResult();
        EXPECT_EQ(loop.state().stage, Stage::waitingForScan);
        EXPECT_TRUE(loop.cancelLogin());
        nextResult();
        login("Ferno"); // for the end of the scope
    }
    EXPECT_EQ(heard, "login 1 0 base 2 117 code 3 https://qr/1 login 3 10001 ");
    MainLoop again;
    EXPECT_EQ(again.state().stage, Stage::signedOut);
    EXPECT_EQ(again.poll([](const auto&, uint64_t) {}), 0u);
    uninstall();
    EXPECT_FALSE(MainLoop().isOn());
}

} // namespace
} // namespace vesk::test
