#include "flow/refreshtest.h"

#include <chrono>
#include <cstdlib>

#include "foundation/task/veskrefreshtokentask.h"
#include "module/veskmodule.h"
#include "support/waituntil.h"

namespace vesk::test {

namespace {

int64_t unixNow() {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace

RefreshTest::RefreshTest(const char* channelName, const char* simulator, const char* fileName)
    : MessengerTest(channelName, simulator, fileName) {
    VESKModule::UsePath((game.path() / "VESKCore.dll").make_preferred().string());
}

void RefreshTest::logInAndRun() {
    const std::string expiry = std::to_string(unixNow() + 30);
    backend.next(loginAnswer("1", R"(,"channel_info":{"access_token":"old"},"token_expire_time":)" +
                                      expiry));
    ASSERT_EQ(scanAndLogin().retCode, VESKError::SUCCESS);
    VESKRefreshTokenTask().DoTask();
}

void RefreshTest::expectRefreshed(const std::string& members, int64_t lifetime) const {
    VESKLoginRet held;
    waitUntil("the fresh token", [&] {
        VESKLogin::GetLoginRet(held);
        return held.token == "fresh";
    });
    EXPECT_EQ(held.retCode, VESKError::SUCCESS);
    EXPECT_LE(std::abs(held.tokenExpire - unixNow() - lifetime), 5);
    EXPECT_EQ(held.openid, "openid-1");
    EXPECT_EQ(held.channelInfo,
              R"({"openid":"openid-1",)" + members +
                  R"(,"access_token":"fresh","refresh_token":"","scope":"","funcs":"",)"
                  R"("other_funcs":"","extend":""})");
    EXPECT_EQ(observer.loginCount(), 1u) << "nobody is told";
    VESKRefreshTokenTask().DoTask();
    EXPECT_EQ(game.logLines("No need to refresh"), 1u);
}

void RefreshTest::expectDropped() const {
    waitUntil("the login to be dropped", [] {
        VESKLoginRet held;
        return !VESKLogin::GetLoginRet(held);
    });
    EXPECT_EQ(readFile(game.loginCache()), channel + "uid-1") << "the device still knows who";
}

} // namespace vesk::test
