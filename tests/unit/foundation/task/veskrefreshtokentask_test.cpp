#include "foundation/task/veskrefreshtokentask.h"

#include "common/veskinnerrecords.h"
#include "login/veskloginmanager.h"
#include "unit/unittest.h"

namespace vesk::test {

using RefreshTokenTask = UnitTest;

TEST_F(RefreshTokenTask, RefreshesWithinTheMarginOfTheChannel) {
    using Decision = VESKRefreshTokenTask::Decision;
    constexpr int64_t clock = 1700000000;
    const Rows<const char*, int64_t, int32_t, const char*, Decision> rows = {
        {"KZ", clock + 541, 0, "{}", Decision::NotYet},
        {"KZ", clock + 540, 0, "{}", Decision::Refresh},
        {"Ferno", clock + 61, 0, "{}", Decision::NotYet},
        {"Ferno", clock + 60, 0, "{}", Decision::Refresh},
        {"Steam", clock + 301, 0, "{}", Decision::NotYet},
        {"Steam", clock + 300, 0, "{}", Decision::Refresh},
        {"kz", clock + 301, 0, "{}", Decision::NotYet},
        {"KZ", -1, 0, "x", Decision::Refresh},
        {"KZ", 0, 0, "{}", Decision::Refresh},
        {"KZ", 0, 0, "", Decision::Invalid},
        {"KZ", 0, 1002, "{}", Decision::Invalid},
    };
    for (const auto& [channel, expire, retCode, channelInfo, decision] : rows) {
        InnerLoginRet ret(retCode);
        ret.channel = channel;
        ret.channelInfo = channelInfo;
        ret.tokenExpire = expire;
        EXPECT_EQ(VESKRefreshTokenTask::Decide(ret, clock), decision) << channel << expire;
    }
}

TEST_F(RefreshTokenTask, LooksAtTheHeldLoginWhenItRuns) {
    VESKRefreshTokenTask task;
    EXPECT_EQ(task.GetTaskName(), "refreshTokenTask");
    EXPECT_EQ(task.GetInterval(), 240u);
    task.DoTask();
    EXPECT_EQ(newMessages().back(), "fail to getLoginRet");
    const Rows<int64_t, const char*> rows = {
        {now() + 400, "No need to refresh"},
        {now() + 200, "Start to reresh token channel:Steam"},
        {0, "Start to reresh token channel:Steam"},
        {now() - 1, "invalid login ret"}, // an expired login is found, with its code
    };
    for (const auto& [expire, message] : rows) {
        InnerLoginRet ret(0);
        ret.FromJson(R"({"openid":"O","token":"T","channel":"Steam","channel_info":{}})");
        ret.tokenExpire = expire;
        VESKLoginManager::GetInstance()->SaveLoginRet(ret);
        task.DoTask();
        EXPECT_EQ(newMessages().back(), message) << expire;
    }
    EXPECT_EQ(logged("]Start to refresh token"), 2u);
}

} // namespace vesk::test
