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

class ThreadTimer : public UnitTest {
protected:
    inline static std::atomic<int> deleted{0};
    inline static std::atomic<int> ticks{0};

    class Timer : public VESKThreadTimer {
    public:
        explicit Timer(double seconds, Callback tick = &countTick) {
            interval = seconds;
            callback = tick;
            context = &ticks;
        }
        ~Timer() override { ++deleted; }
    };

    static void countTick(void* counter, VESKThreadTimer*) {
        ++*static_cast<std::atomic<int>*>(counter);
    }
    static void countTickAndStop(void* counter, VESKThreadTimer* timer) {
        countTick(counter, timer);
        timer->stop();
    }

    /// Waits until that many timers have deleted themselves and said their last word.
    void waitForEnd(int timers) const {
        waitUntil("the timers' end", [&] {
            return deleted == timers && logged("]timer runloop end") == size_t(timers);
        });
    }
};

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

TEST_F(ThreadTimer, StopWakesATimerThatWaits) {
    auto* timer = new Timer(60.0);
    EXPECT_EQ(timer->start(), 0);
    EXPECT_EQ(timer->start(), -1);
    waitUntil("the wait", [&] { return logged("]timer is waiting") == 1; });
    timer->stop();
    waitForEnd(1);
    EXPECT_EQ(ticks, 0);
    EXPECT_EQ(logged("]timer is running,this call will return"), 1u);
    EXPECT_EQ(logged("]timer wakeup, will return"), 1u);
    newMessages();
    Timer(60.0).stop(); // never started, it stays its owner's
    EXPECT_EQ(deleted, 2);
    EXPECT_THAT(newMessages(), ElementsAre("timer stop", "timer is stop, this call will return"));
}

TEST_F(ThreadTimer, StopInsideTheCallbackMakesItTheLast) {
    EXPECT_EQ((new Timer(0.001, &countTickAndStop))->start(), 0);
    waitForEnd(1);
    EXPECT_EQ(ticks, 1);
    EXPECT_THAT(newMessages(),
                ElementsAre("timer start", "timer runloop start", "Timer thread will circulation",
                            "timer is waiting", "timer wakeup", "timer running", "timer stop",
                            "will notify timer thread", "timer runloop end"));
}

TEST_F(ThreadTimer, FiftyTimersStoppedAtAnyMoment) {
    for (int i = 0; i < 50; ++i) {
        auto* timer = new Timer(0.0001, i % 3 == 0 ? nullptr : &countTick);
        ASSERT_EQ(timer->start(), 0);
        std::this_thread::sleep_for(std::chrono::microseconds(i % 2 * 40 * i));
        timer->stop();
    }
    waitForEnd(50);
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
    EXPECT_EQ(logged("]task manager do task"), 4u);
    EXPECT_EQ(logged("]task manager will traverse task map"), 2u);
}

TEST_F(TaskManager, TaskOfTheSameNameReplacesTheOldOneAndStartsAnew) {
    add("a", 1000);
    newMessages();
    auto* second = new Teller("a", story);
    second->SetLastRunTime(0);
    manager->AddTask(second);
    EXPECT_THAT(newMessages(),
                ElementsAre("same name task,delete old task", "add task success :a"));
    manager->RunLoop();
    EXPECT_EQ(story, "-a");
    EXPECT_LE(now() - second->GetLastRunTime(), 5);
}

TEST_F(TaskManager, TakesTasksByNameAndDeletesThemAtItsEnd) {
    add("a");
    add("b");
    newMessages();
    manager->AddTask(nullptr);
    Teller unnamed("", story);
    manager->AddTask(&unnamed); // not taken over
    for (const char* name : {"b", "b", ""}) {
        manager->RemoveTask(name);
    }
    EXPECT_EQ(story, "-b");
    manager.reset();
    EXPECT_EQ(story, "-b-a");
    EXPECT_THAT(newMessages(),
                ElementsAre("add task is null", "add task name is empty", "remove task success :b",
                            "no find this task :b", "remove task name is null", "task manager stop",
                            "task manager timer is empty", "VESKLifeCycleAble ~~~~ "));
}

TEST_F(TaskManager, TickOfATimerThatIsNotTheCurrentOneDoesNothing) {
    add("a", 1000);
    manager->Change("onResume");
    manager->Change("onPause");
    EXPECT_THAT(newMessages(), IsSupersetOf({"VESKTaskManager::onResume ..", "task manager start",
                                             "VESKTaskManager::onPause ..", "task manager stop"}));
    VESKThreadTimer dropped;
    VESKTaskManager::onTaskTimer(manager.get(), &dropped);
    VESKTaskManager::onTaskTimer(nullptr, &dropped);
    EXPECT_THAT(newMessages(), IsSupersetOf({"on task timer", "this timer is stop, it do nothing",
                                             "on task timer", "context is empty!"}));
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
        {"Steam", clock + 301, 0, "{}", Decision::NotYet},
        {"Steam", clock + 300, 0, "{}", Decision::Refresh},
        {"kz", clock + 301, 0, "{}", Decision::NotYet},
        {"kz", clock + 300, 0, "{}", Decision::Refresh},
        {"Guest", clock + 300, 0, "{}", Decision::Refresh},
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
    EXPECT_EQ(task->GetTaskName(), "refreshTokenTask");
    EXPECT_EQ(task->GetInterval(), 240u);
    task->DoTask();
    EXPECT_EQ(newMessages().back(), "fail to getLoginRet");
    const Rows<int64_t, const char*> rows = {
        {now() + 400, "No need to refresh"},
        {now() + 200, "Start to reresh token channel:Steam"},
        {0, "Start to reresh token channel:Steam"},
        {now() - 1, "invalid login ret"}, // an expired login is found, with its code
    };
    for (const auto& [expire, message] : rows) {
        ret.tokenExpire = expire;
        manager.SaveLoginRet(ret);
        task->DoTask();
        EXPECT_EQ(newMessages().back(), message) << expire;
    }
    EXPECT_EQ(logged("]Start to refresh token"), 2u);

    ret.channel = "KZ";
    ret.tokenExpire = 0;
    manager.SaveLoginRet(ret);
    task->DoTask();
    manager.SaveLoginRet(ret); // the next login, of the same player
    InnerLoginPluginRet answer;
    answer.channel = "KZ";
    answer.channelInfo = R"({"ctk":"late"})";
    VESKInnerObserverHolder<InnerLoginPluginRet>::CommitToTaskQueue(answer,
                                                                    kObserverIDPluginRefresh, "");
    EXPECT_TRUE(manager.GetLoginRet(ret));
    EXPECT_STREQ(ret.token.c_str(), "T");
}

} // namespace vesk::test
