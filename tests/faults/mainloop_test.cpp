// The game's main loop: who cancels is not logged in, and who waits until all is idle may leave.
#include <iterator>
#include <vector>

#include "faults/mainlooptest.h"

namespace vesk::test {
namespace {

constexpr int kLeft = 10;    // the code that a game ends with
constexpr int kHeldMs = 150; // how long an answer is held back

Taken nextResult() {
    std::vector<Taken> taken;
    waitUntil("a result", [&] { return poll(taken), !taken.empty(); });
    EXPECT_EQ(taken.size(), 1u);
    return taken.front();
}

struct MainLoopFaults : FaultTest {
    const Messenger ferno{game, "ferno", "frlogin.dll"};
};

TEST_F(MainLoopFaults, CancelledLoginsLogNobodyInWhereverTheAnswerIsHeldBack) {
    const char* const scanned = "on_qrcode=1:qr:u,1:success\n";
    const Answer preCode = {"auth/pcprecode", R"({"ret":0,"precode":"p"})"};
    const Answer slowPreCode = {preCode.path, preCode.body, 200, kHeldMs};
    const struct {
        const char* channel;
        const char* script;
        Answer held;
        bool hasCode; ///< cancels when the code is there, not when the request is
        size_t logouts;
    } steps[] = {
        {"Steam", "", loginAnswer("1", "", kHeldMs), false, 1},
        {"Steam", "", {"auth/login", "gone", 404, kHeldMs}, false, 0},
        {"Ferno", scanned, slowPreCode, false, 0},
        {"Ferno", scanned, {preCode.path, R"({"ret":3})", 200, kHeldMs}, false, 0},
        {"Ferno", "on_qrcode=500:qr:u,1:success\n", preCode, false, 0},
        {"Ferno", "on_qrcode=1:qr:u,500:success\n", preCode, true, 0},
        {"Ferno", scanned, loginAnswer("1", "", kHeldMs), false, 1},
    };
    const int count = rounds(21);
    int cancelled = 0;
    EXPECT_EQ(vesk_queue_results(1), 1);
    std::vector<Taken> taken;
    for (int i = 0; i < count && !HasFailure(); ++i) {
        const auto& step = steps[i % std::size(steps)];
        SCOPED_TRACE("step " + std::to_string(i % std::size(steps)));
        backend.clear();
        backend.next(step.held);
        ferno.script(step.script);
        vesk_login(step.channel, "", "", "");
        backend.waitForRequest(step.held.path);
        if (step.hasCode) {
            EXPECT_EQ(nextResult().kind, VESK_RESULT_QR_CODE);
        }
        const bool isInTime = vesk_cancel_login() == 1;
        if (step.held.delayMs == 0) { // the component goes on, and the SDK does not wait for it
            std::this_thread::sleep_for(std::chrono::milliseconds(600));
        }
        EXPECT_EQ(vesk_wait_idle(15000), 1);
        taken.clear();
        poll(taken);
        ASSERT_EQ(taken.size(), 1u);
        if (!isInTime) { // on a busy machine: it had ended, and stays as it is
            EXPECT_NE(taken[0].code, VESK_LOGIN_CANCELLED);
            continue;
        }
        ++cancelled;
        EXPECT_EQ(taken[0].code, VESK_LOGIN_CANCELLED);
        EXPECT_EQ(state().state, VESK_SIGNED_OUT);
        EXPECT_EQ(readFile(game.loginCache()), "");
        EXPECT_EQ(backend.requests("auth/login").size(), step.held.path == "auth/login" ? 1u : 0u);
        EXPECT_EQ(backend.requests("auth/logout").size(), step.logouts);
        countRow("a cancelled login", 0);
    }
    EXPECT_GT(cancelled, count / 2);
}

TEST_F(MainLoopFaults, LogoutReachesTheBackendBeforeTheGameLeaves) {
    const Messenger messenger{game, VESK_MESSENGER_SIMULATOR, VESK_MESSENGER_FILE};
    const int count = rounds(5);
    for (int i = 0; i < count && !HasFailure(); ++i) {
        for (const char* const channel : {"Steam", VESK_MESSENGER}) {
            SCOPED_TRACE(channel);
            expectGame(kLeft, [&] {
                vesk_queue_results(1);
                vesk_login(channel, "", "", "");
                waitUntil("the login", [] {
                    std::vector<Taken> taken;
                    return poll(taken), state().state == VESK_SIGNED_IN;
                });
                vesk_logout("", "", 0);
                return vesk_wait_idle(3000) == 1 ? kLeft : 1;
            });
            countRow("a game that leaves", 0);
        }
    }
    // Not before: on Windows each game comes by here on the way to its own row.
    EXPECT_EQ(backend.requests("auth/logout").size(), 2u * static_cast<size_t>(count));
}

} // namespace
} // namespace vesk::test
