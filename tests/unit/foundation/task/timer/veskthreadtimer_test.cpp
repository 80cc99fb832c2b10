#include "foundation/task/timer/veskthreadtimer.h"

#include <thread>

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

TEST_F(ThreadTimer, TimerThatWasNeverStartedStaysItsOwners) {
    Timer(60.0).stop();
    EXPECT_EQ(deleted, 1);
    EXPECT_THAT(newMessages(), ElementsAre("timer stop", "timer is stop, this call will return"));
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

} // namespace vesk::test
