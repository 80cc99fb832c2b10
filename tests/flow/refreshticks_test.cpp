// The real ticks, which nobody wants to wait for in every run: scripts/test --slow.
#include <chrono>

#include "flow/messengertest.h"
#include "support/waituntil.h"

namespace vesk::test {
namespace {

struct RefreshTicks : MessengerTest {
    RefreshTicks() : MessengerTest("Ferno", "ferno", "frlogin.dll") {}
};

TEST_F(RefreshTicks, FourthOneRefreshesTheToken) {
    const auto start = std::chrono::system_clock::now();
    const auto expiry = std::chrono::duration_cast<std::chrono::seconds>(start.time_since_epoch());
    // At the fourth tick, after 240 seconds, Ferno's margin of 60 seconds has begun.
    backend.next(loginAnswer("1", R"(,"channel_info":{"access_token":"old"},"token_expire_time":)" +
                                      std::to_string(expiry.count() + 290)));
    script("ctt=fresh\n");
    ASSERT_EQ(scanAndLogin().retCode, VESKError::SUCCESS);
    waitUntil(
        "the fresh token",
        [] {
            VESKLoginRet held;
            VESKLogin::GetLoginRet(held);
            std::this_thread::sleep_for(std::chrono::seconds(1)); // each look is a line of the log
            return held.token == "fresh";
        },
        std::chrono::seconds(280));
    EXPECT_GE(std::chrono::system_clock::now() - start, std::chrono::seconds(235));
    EXPECT_EQ(game.logLines("on task timer"), 4u);
}

} // namespace
} // namespace vesk::test
