#include <thread>

#include "common/veskdefine.h"
#include "common/veskinnerrecords.h"
#include "foundation/task/manager/vesktaskmanager.h"
#include "foundation/task/timer/veskthreadtimer.h"
#include "foundation/task/veskrefreshtokentask.h"
#include "login/veskloginmanager.h"
#include "support/waituntil.h"
#include "unit/unittest.h"

namespace vesk::test {

using ThreadTimer = UnitTest;

TEST_F(ThreadTimer, DeadlineTakesMillisecondsForMicroseconds) {
    const Rows<double, int64_t, int32_t, int64_t, int32_t> rows = {
        {60.0, 1000, 0, 1060, 0},
        {60.0, 1000, 900, 1060, 900000},
        {60.0, 0x7FFFFFFFF, 999, 0x7FFFFFFFF + 60, 999000},
        {0.5, 1000, 999, 1000, 500999000},
        {0.9990234375, 1000, 976, 1000, 999999437}, // 999,023,437 + 976,000 ns
        {0.9990234375, 1000, 977, 1001, 437},
    };
    for (const auto& [interval, clock, milliseconds, seconds, nanoseconds] : rows) {
        const auto deadline = VESKThreadTimer::Deadline(interval, clock, milliseconds);
        EXPECT_EQ(deadline.seconds, seconds) << interval << " " << milliseconds;
        EXPECT_EQ(deadline.nanoseconds, nanoseconds) << interval << " " << milliseconds;
    }
}

TEST_F(ThreadTimer, StopIsHeededInsideTheCallbackAndAtAnyMoment) {
    static std::atomic<int> ticks{0};
    const auto start = [](double seconds, VESKThreadTimer::Callback tick) {
        auto* timer = new VESKThreadTimer; // deletes itself at its end
        timer->interval = seconds;
        timer->callback = tick;
        EXPECT_EQ(timer->start(), 0);
        return timer;
    };
    const auto waitForEnd = [this](size_t timers) {
        waitUntil("the end", [&] { return logged("]timer runloop end") == timers; });
    };
    start(0.001, [](void*, VESKThreadTimer* timer) {
        ++ticks;
        timer->stop();
    });
    waitForEnd(1);
    EXPECT_EQ(ticks, 1);
    for (int i = 0; i < 50; ++i) {
        const auto count = [](void*, VESKThreadTimer*) { ++ticks; };
        auto* timer = start(i % 2 == 0 ? 60.0 : 0.0001, i % 3 == 0 ? nullptr : +count);
        EXPECT_EQ(timer->start(), -1);
        std::this_thread::sleep_for(std::chrono::microseconds(i % 4 * 20 * i));
        timer->stop();
    }
    waitForEnd(51);
}

class TaskManager : public UnitTest {
protected:
    /// Tells its runs ("+name") and its end ("-name").
    class Teller : public VESKTask {
    public:
        Teller(std::string name, std::string& story) : mName(std::move(name)), mStory(story) {}
        ~Teller() override { mStory += "-" + mName; }
        void DoTask() override {
            EXPECT_LE(now() - GetLastRunTime(), 5) << "counted as run only afterwards";
            mStory += "+" + mName;
        }
        std::string GetTaskName() override { return mName; }
        uint32_t GetInterval() override { return 240; }

    private:
        const std::string mName;
        std::string& mStory;
    };

    /// Adds a task that ran last so many seconds ago.
    void add(const std::string& name, int64_t age = 0) {
        VESKTask* task = new Teller(name, story);
        manager->AddTask(task);
        task->SetLastRunTime(static_cast<uint32_t>(now() - age));
    }

    std::string story;
    std::unique_ptr<VESKTaskManager> manager = std::make_unique<VESKTaskManager>();
};

TEST_F(TaskManager, TickRunsWhatIsDueInTheOrderOfTheNames) {
    add("b", 240);
    add("a", 241);
    add("C", 10000);
    add("never", now());
    add("early", 230);
    add("ahead", -1000); // the clock was set back
    for (int tick = 0; tick < 2; ++tick) {
        manager->RunLoop();
        EXPECT_EQ(story, "+C+a+b+never");
    }
}

TEST_F(TaskManager, TaskOfTheSameNameReplacesTheOldOneAndStartsAnew) {
    add("a", 1000);
    auto* second = new Teller("a", story);
    second->SetLastRunTime(0);
    manager->AddTask(second);
    manager->RunLoop();
    EXPECT_EQ(story, "-a");
    EXPECT_LE(now() - second->GetLastRunTime(), 5);
    add("b");
    manager->AddTask(nullptr);
    Teller unnamed("", story);
    manager->AddTask(&unnamed); // not taken over
    for (const char* name : {"b", "b", ""}) {
        manager->RemoveTask(name);
    }
    EXPECT_EQ(story, "-a-b");
    manager.reset();
    EXPECT_EQ(story, "-a-b-a");
}

TEST_F(TaskManager, TickOfATimerThatIsNotTheCurrentOneDoesNothing) {
    add("a", 1000);
    for (const char* tag : {"onResume", "onstop", "onPause"}) {
        manager->Change(tag);
    }
    EXPECT_THAT(newMessages(), IsSupersetOf({"task manager start", "onstop have not define yet",
                                             "task manager stop"}));
    VESKThreadTimer dropped;
    VESKTaskManager::onTaskTimer(manager.get(), &dropped);
    VESKTaskManager::onTaskTimer(nullptr, &dropped);
    EXPECT_EQ(story, "");
    manager->Shutdown();
    newMessages();
    manager->StartTimer();
    EXPECT_THAT(newMessages(), Not(Contains("task manager start")));
}

using RefreshTokenTask = UnitTest;

TEST_F(RefreshTokenTask, RefreshesWithinTheMarginOfTheChannel) {
    using Decision = VESKRefreshTokenTask::Decision;
    constexpr int64_t clock = 1700000000;
    const Rows<const char*, int64_t, int32_t, const char*, Decision> rows = {
        {"KZ", clock + 541, 0, "{}", Decision::NotYet},
        {"KZ", clock + 540, 0, "{}", Decision::Refresh},
        {"Ferno", clock + 61, 0, "{}", Decision::NotYet},
        {"Ferno", clock + 60, 0, "{}", Decision::Refresh},
        {"kz", clock + 301, 0, "{}", Decision::NotYet},
        {"kz", clock + 300, 0, "{}", Decision::Refresh},
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

TEST_F(RefreshTokenTask, LooksAtTheHeldLoginWhenItRunsAndTheAnswerIsForThatLogin) {
    VESKLoginManager& manager = *VESKLoginManager::GetInstance();
    InnerLoginRet ret(0);
    ret.FromJson(R"({"openid":"O","token":"T","channel":"Steam","channel_info":{}})");
    const auto task = VESKLoginManager::MakeRefreshTask();
    EXPECT_EQ(task->GetInterval(), 240u);
    task->DoTask();
    EXPECT_EQ(newMessages().back(), "fail to getLoginRet");
    ret.tokenExpire = now() - 1; // an expired login is found, with its code
    manager.SaveLoginRet(ret);
    task->DoTask();
    EXPECT_EQ(newMessages().back(), "invalid login ret");

    ret.channel = "Ferno"; // whose component is not there, unlike KZ's: no answer but ours
    ret.tokenExpire = 0;
    manager.SaveLoginRet(ret);
    task->DoTask();
    EXPECT_EQ(logged("]Start to refresh token"), 1u);
    manager.SaveLoginRet(ret); // the next login, of the same player
    InnerLoginPluginRet answer;
    answer.channel = "Ferno";
    answer.channelInfo = R"({"ctt":"late"})";
    for (int time = 1; time <= 2; ++time) { // who was asked twice may answer twice
        VESKInnerObserverHolder<InnerLoginPluginRet>::CommitToTaskQueue(
            answer, kObserverIDPluginRefresh, "");
        EXPECT_TRUE(manager.GetLoginRet(ret));
        EXPECT_STREQ(ret.token.c_str(), "T") << time;
    }
}

} // namespace vesk::test
