#ifndef VESK_FOUNDATION_TASK_TIMER_VESKTHREADTIMER_H
#define VESK_FOUNDATION_TASK_TIMER_VESKTHREADTIMER_H

#include <atomic>
#include <cstdint>
#include <pthread.h>
#include <string>

namespace Braxel {
namespace VESK {

/// The instant at which a wait ends, as pthread_cond_timedwait takes it.
struct TimerDeadline {
    int64_t seconds;
    int32_t nanoseconds;
};

/// A periodic timer with a thread of its own. Once started it belongs to that thread, which
/// deletes it after stop(); the owner then only drops its pointer.
class VESKThreadTimer {
public:
    using Callback = void (*)(void* context, VESKThreadTimer* timer);

    VESKThreadTimer();
    virtual ~VESKThreadTimer();
    VESKThreadTimer(const VESKThreadTimer&) = delete;
    VESKThreadTimer& operator=(const VESKThreadTimer&) = delete;

    /// Set these before start().
    double interval = 0;         ///< seconds
    Callback callback = nullptr; ///< runs on the timer's thread, without a lock held
    void* context = nullptr;

    /// @return 0; -1 when it is running already; the negated error when no thread can be made.
    int start();

    /// Ends the timer and does not wait for it. A callback that is running is the last.
    void stop();

    /// When a wait of @p interval seconds that starts at the given clock ends. Deliberate: the
    /// clock's milliseconds count as microseconds, so the wait is short by up to a second.
    static TimerDeadline Deadline(double interval, int64_t seconds, int32_t milliseconds);

private:
    static void StartRoutine(void* timer);
    int runloop(double seconds);
    bool TakeStopRequest();

    std::string mName;
    std::atomic<bool> mRunning{false};
    std::atomic<bool> mStopRequested{false};
    pthread_mutex_t mMutex;
    pthread_cond_t mCondition;
};

} // namespace VESK
} // namespace Braxel

#endif
