#include "foundation/task/manager/vesktaskmanager.h"

#include "foundation/task/timer/veskthreadtimer.h"
#include "unit/unittest.h"

namespace vesk::test {

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
}

} // namespace vesk::test
