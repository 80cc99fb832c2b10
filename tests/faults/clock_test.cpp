#include <ctime>

#include "faults/faulttest.h"
#include "faults/systemfaults.h"
#include "support/waituntil.h"

namespace vesk::test {
namespace {

struct ClockFaults : FaultTest {
    ClockFaults() {
        SystemFaults::clockAhead = 0;
        settle();
    }

    size_t ticks() const { return game.logLines("on task timer"); }
    void waitForTick(size_t number) const {
        waitUntil(
            "the tick", [&] { return ticks() >= number; }, std::chrono::seconds(3));
    }
    /// Logs in, with a token for an hour; the timer then sleeps for a minute.
    void loginWithTimer() {
        const std::string expiry = std::to_string(std::time(nullptr) + 3600);
        // Whatever the backend thinks of the time of the request.
        backend.next(loginAnswer("A", ",\"token_expire_time\":" + expiry));
        EXPECT_EQ(faulty("a login under this clock").retCode, VESKError::SUCCESS);
        SystemFaults::waitForQuiet();
    }

    const int64_t kDay = 86400;
    /// The first seconds that a signed 32-bit number does not hold.
    const int64_t kPast2038 = (int64_t{1} << 31) + 1000 - std::time(nullptr);
    SystemFaults system;
};

TEST_F(ClockFaults, JumpExpiresWhatWaitsForAConnection) {
    for (const int64_t ahead : {int64_t{0}, kDay, -kDay, kPast2038}) {
        SCOPED_TRACE(ahead);
        for (int i = 0; i < 4; ++i) { // as many as run at once; the next login supersedes each
            backend.next({"auth/login", "{}", 200, 500});
            VESKLogin::Login("Steam", "", "", "");
        }
        VESKLogin::Login("Steam", "", "", "");
        SystemFaults::clockAhead = ahead;
        const VESKLoginRet ret = observer.nextLogin().ret;
        SystemFaults::clockAhead = 0;
        EXPECT_EQ(ret.retCode, ahead == 0 ? 0 : 4);
        EXPECT_EQ(ret.thirdCode, ahead == 0 ? 0 : 4);
        countRow("a request that waits");
        SystemFaults::waitForQuiet();
    }
    expectWhole();
}

TEST_F(ClockFaults, JumpWakesTheTimerOnceAndMayExpireTheToken) {
    const struct {
        int64_t ahead;
        size_t ticks;
        int32_t retCode;
    } rows[] = {
        {kDay, 1, VESKError::TOKEN_EXPIRED},
        {-kDay, 0, VESKError::SUCCESS},
        // Deliberate: the clock is taken as 32 bits, so that then no token is expired.
        {kPast2038, 1, VESKError::SUCCESS},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.ahead);
        loginWithTimer();
        const size_t before = ticks();
        SystemFaults::clockAhead = row.ahead;
        waitForTick(before + row.ticks);
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        EXPECT_EQ(ticks(), before + row.ticks);
        VESKLoginRet held;
        EXPECT_TRUE(VESKLogin::GetLoginRet(held));
        EXPECT_EQ(held.retCode, row.retCode);
        // The timer of the next login goes by the clock as it is by now.
        loginWithTimer();
        SystemFaults::clockAhead += 61;
        waitForTick(before + row.ticks + 1);
        EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
        SystemFaults::clockAhead = 0;
    }
    expectWhole();
}

TEST_F(ClockFaults, FourthTickLooksAtTheToken) {
    loginWithTimer();
    for (size_t tick = 1; tick <= 8; ++tick) {
        SystemFaults::clockAhead += 60;
        waitForTick(tick);
        SystemFaults::waitForQuiet();
        EXPECT_EQ(game.logLines("No need to refresh"), tick / 4) << tick;
    }
    countRow("eight minutes", 0);
    SystemFaults::clockAhead = 0;
    expectWhole();
}

} // namespace
} // namespace vesk::test
