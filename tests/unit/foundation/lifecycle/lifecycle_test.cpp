#include <thread>

#include "foundation/lifecycle/veskcomponentlife.h"
#include "support/waituntil.h"
#include "unit/unittest.h"

namespace vesk::test {

using namespace std::chrono_literals;

struct Life : UnitTest {
    bool start() {
        VESKComponentLife::Start start(life);
        std::this_thread::sleep_for(start ? 20ms : 0ms);
        starts += start ? 1 : 0;
        return start && start.Publish();
    }
    void depart() {
        life.Depart({[this] { return ++stops == 1; }, [this] { return ++unloads == 1; }});
    }
    /// Waits for something that another thread does.
    static bool comes(const std::function<bool()>& condition) {
        waitUntil("another thread", condition);
        return true;
    }

    std::atomic<int> starts{0};
    std::atomic<int> stops{0};
    std::atomic<int> unloads{0};
    VESKComponentLife life{100ms, 1000ms};
};

TEST_F(Life, IsStartedOnceWhoeverAsksAndNotAfterItsEnd) {
    std::atomic<int> running{0};
    onEightThreads([&](int) {
        start();
        running += life.IsRunning() ? 1 : 0;
    });
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(running, 8) << "whoever asks finds it running";
    EXPECT_EQ(life.End(), VESKComponentLife::Stage::kRunning);
    EXPECT_FALSE(start());
    EXPECT_FALSE(VESKComponentLife::Call(life));
}

TEST_F(Life, EndDuringTheStartLeavesTheRestToTheStarter) {
    VESKComponentLife::Start taken(life);
    ASSERT_TRUE(taken);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_FALSE(VESKComponentLife::Start(life)) << "by the same thread, from a callback";
    EXPECT_LT(std::chrono::steady_clock::now() - before, 5s) << "it waits for itself";
    EXPECT_EQ(life.End(), VESKComponentLife::Stage::kStarting);
    EXPECT_FALSE(taken.Publish());
    depart();
    EXPECT_EQ(stops, 1);
    EXPECT_TRUE(comes([this] { return unloads == 1; }));
}

TEST_F(Life, StopComesAfterTheLastCallAndUnloadingAfterTheLastCallback) {
    start();
    {
        const VESKComponentLife::Callback callback(life);
        EXPECT_TRUE(callback);
        {
            const VESKComponentLife::Call call(life);
            life.End();
            depart();
            std::this_thread::sleep_for(50ms);
            EXPECT_EQ(stops, 0);
        }
        EXPECT_TRUE(comes([this] { return stops == 1; }));
        EXPECT_FALSE(VESKComponentLife::Callback(life));
        std::this_thread::sleep_for(150ms);
        EXPECT_EQ(unloads, 0);
    }
    EXPECT_TRUE(comes([this] { return unloads == 1; }));
}

TEST_F(Life, StopInsideACallbackIsAnotherThreads) {
    std::atomic<bool> isOther{false};
    start();
    {
        const VESKComponentLife::Callback callback(life);
        life.End();
        life.Depart({[&, self = std::this_thread::get_id()] {
                         isOther = std::this_thread::get_id() != self;
                         return ++stops == 1;
                     },
                     [this] { return ++unloads == 1; }});
        EXPECT_TRUE(comes([this] { return stops == 1; }));
    }
    EXPECT_TRUE(isOther);
    EXPECT_TRUE(comes([this] { return unloads == 1; }));
}

} // namespace vesk::test
