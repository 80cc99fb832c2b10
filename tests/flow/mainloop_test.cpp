// The game's main loop: results wait, every login has one answer, nothing comes after its end.
#include <ctime>
#include <gmock/gmock.h>
#include <memory>
#include <vector>

#include "support/gametest.h"
#include "support/waituntil.h"
#include "vesk/vesk_c.h"

namespace vesk::test {
namespace {

using ::testing::ElementsAre;

using Result = std::unique_ptr<vesk_result, void (*)(vesk_result*)>;

Result poll() {
    vesk_result* result = nullptr;
    vesk_next_result(&result);
    return {result, &vesk_result_free};
}

Result nextResult() {
    Result result = poll();
    waitUntil("a result", [&] { return result != nullptr || (result = poll()) != nullptr; });
    return result;
}

/// Its kind and its code, if it answers the call of that number.
std::vector<int32_t> facts(const Result& result, uint64_t request) {
    const int32_t code = result->login != nullptr  ? result->login->ret_code
                         : result->base != nullptr ? result->base->ret_code
                                                   : result->qr_code->ret_code;
    return {result->request == request ? result->kind : -1, code};
}

vesk_login_state state() {
    vesk_login_state now = {};
    now.struct_size = sizeof now;
    EXPECT_EQ(vesk_state(&now), 1);
    return now;
}

uint64_t request(const char* channel) {
    vesk_login(channel, "", "", "");
    return state().request;
}

struct MainLoop : MessengerTest {
    MainLoop() : MessengerTest("Ferno", "ferno", "frlogin.dll") {
        start();
        EXPECT_EQ(vesk_queue_results(1), 1);
    }
    ~MainLoop() override { EXPECT_EQ(observer.loginCount(), observerLogins); }
    size_t observerLogins = 0;
};

TEST_F(MainLoop, EachCallIsAnsweredAndTheStateFollows) {
    EXPECT_EQ(state().state, VESK_SIGNED_OUT);
    const uint64_t steam = request("Steam");
    EXPECT_EQ(state().state, VESK_LOGGING_IN);
    const Result in = nextResult();
    EXPECT_THAT(facts(in, steam), ElementsAre(VESK_RESULT_LOGIN, VESK_SUCCESS));
    vesk_login_state now = state();
    EXPECT_EQ(now.state, VESK_SIGNED_IN);
    EXPECT_STREQ(now.channel, "Steam");
    EXPECT_STREQ(now.openid, in->login->openid);
    EXPECT_EQ(now.token_expire, in->login->token_expire);

    vesk_logout("", "", 0);
    EXPECT_THAT(facts(nextResult(), steam + 1), ElementsAre(VESK_RESULT_BASE, VESK_SUCCESS));
    EXPECT_EQ(vesk_wait_idle(3000), 1);
    EXPECT_EQ(backend.requests("auth/logout").size(), 1u);
    EXPECT_EQ(state().state, VESK_SIGNED_OUT);

    script("on_qrcode=10:qr:u\n");
    const uint64_t ferno = request("Ferno");
    const Result code = nextResult();
    EXPECT_THAT(facts(code, ferno), ElementsAre(VESK_RESULT_QR_CODE, VESK_SUCCESS));
    EXPECT_STREQ(code->qr_code->qr_code_url, "u");
    EXPECT_EQ(state().state, VESK_WAITING_FOR_SCAN);
    EXPECT_EQ(vesk_wait_idle(3000), 1) << "who waits for a scan waits for a person";

    EXPECT_THAT(facts((request("Discord"), nextResult()), ferno + 1),
                ElementsAre(VESK_RESULT_LOGIN, VESK_UNKNOWN_CHANNEL));
    vesk_logout("Discord", "", 0);
    EXPECT_THAT(facts(nextResult(), ferno + 2),
                ElementsAre(VESK_RESULT_BASE, VESK_UNKNOWN_CHANNEL));
    request("Steam");
    EXPECT_THAT(facts(nextResult(), ferno), ElementsAre(VESK_RESULT_LOGIN, VESK_LOGIN_OVERTAKEN));
    EXPECT_THAT(facts(nextResult(), ferno + 3), ElementsAre(VESK_RESULT_LOGIN, VESK_SUCCESS));
    EXPECT_EQ(poll(), nullptr);
}

TEST_F(MainLoop, ALoginThatTakesTooLongEndsAndItsAnswerIsLoggedOut) {
    vesk_set_login_timeout(150);
    backend.next(loginAnswer("1", "", 400));
    const uint64_t number = request("Steam");
    EXPECT_THAT(facts(nextResult(), number), ElementsAre(VESK_RESULT_LOGIN, VESK_LOGIN_TIMED_OUT));
    EXPECT_EQ(state().state, VESK_SIGNED_OUT);
    backend.waitForRequest("auth/logout");

    backend.next(loginAnswer("1", "", 400));
    request("Steam"); // nobody looks until long after its time
    backend.waitForRequest("auth/logout", 2);
    EXPECT_EQ(nextResult()->login->ret_code, VESK_LOGIN_TIMED_OUT);
    EXPECT_EQ(state().state, VESK_SIGNED_OUT);
}

TEST_F(MainLoop, SwitchedBackTheObserverHearsWhatIsAskedFromThenOn) {
    backend.next({"auth/login", "", 404, 200});
    const uint64_t number = request("Steam");
    EXPECT_EQ(vesk_queue_results(0), 1);
    EXPECT_THAT(facts(nextResult(), number), ElementsAre(VESK_RESULT_LOGIN, VESK_NETWORK_ERROR));
    vesk_login("Steam", "", "", "");
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESK_SUCCESS);
    EXPECT_EQ(poll(), nullptr);
    observerLogins = 1;
}

TEST_F(MainLoop, AnExpiredTokenIsToldOnce) {
    backend.next(
        loginAnswer("1", ",\"token_expire_time\":" + std::to_string(std::time(nullptr) + 1)));
    const uint64_t number = request("Steam");
    EXPECT_THAT(facts(nextResult(), number), ElementsAre(VESK_RESULT_LOGIN, VESK_SUCCESS));
    EXPECT_THAT(facts(nextResult(), number),
                ElementsAre(VESK_RESULT_REFRESHED, VESK_TOKEN_EXPIRED));
    EXPECT_EQ(state().state, VESK_EXPIRED);
    EXPECT_EQ(poll(), nullptr);
}

TEST_F(MainLoop, AfterUnInstallEveryFunctionReturns) {
    request("Ferno");
    vesk_uninstall();
    vesk_login_state now = {};
    now.struct_size = sizeof now;
    EXPECT_EQ(vesk_state(&now) + vesk_cancel_login() + vesk_queue_results(1) + vesk_wait_idle(100),
              0);
    vesk_set_login_timeout(1);
    vesk_login("Steam", "", "", "");
    vesk_logout("", "", 0);
    EXPECT_EQ(poll(), nullptr);
}

} // namespace
} // namespace vesk::test
