#include "foundation/task/timer/veskthreadtimer.h"

#include <cmath>
#include <ctime>

#include "foundation/log/vesklogger.h"
#include "platformimpl/foundation/os/clock.h"
#include "platformimpl/foundation/os/thread.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr int32_t kNanosecondsPerSecond = 1000000000;

} // namespace

VESKThreadTimer::VESKThreadTimer() {
    pthread_mutex_init(&mMutex, nullptr);
    pthread_cond_init(&mCondition, nullptr);
}

VESKThreadTimer::~VESKThreadTimer() {
    pthread_cond_destroy(&mCondition);
    pthread_mutex_destroy(&mMutex);
}

int VESKThreadTimer::start() {
    VESK_LOG_DEBUG("VESKThreadTimer::start", "timer start");
    pthread_mutex_lock(&mMutex);
    int result = -1;
    if (mRunning) {
        VESK_LOG_DEBUG("VESKThreadTimer::start", "timer is running,this call will return");
    } else {
        // Deliberate: it stays true when no thread can be made.
        mRunning = true;
        result = -os::StartDetachedThread(&StartRoutine, this);
    }
    pthread_mutex_unlock(&mMutex);
    return result;
}

void VESKThreadTimer::stop() {
    VESK_LOG_DEBUG("VESKThreadTimer::stop", "timer stop");
    pthread_mutex_lock(&mMutex);
    if (!mRunning) {
        VESK_LOG_DEBUG("VESKThreadTimer::stop", "timer is stop, this call will return");
    } else {
        VESK_LOG_DEBUG("VESKThreadTimer::stop", "will notify timer thread");
        mRunning = false;
        mStopRequested = true;
        pthread_cond_signal(&mCondition);
    }
    pthread_mutex_unlock(&mMutex);
}

void VESKThreadTimer::StartRoutine(void* context) {
    VESKThreadTimer* timer = static_cast<VESKThreadTimer*>(context);
    VESK_LOG_DEBUG("VESKThreadTimer::StartRoutine", "timer runloop start");
    timer->runloop(timer->interval);
    // The stop request may have been seen while stop() still held the mutex: let it finish.
    pthread_mutex_lock(&timer->mMutex);
    pthread_mutex_unlock(&timer->mMutex);
    delete timer;
    VESK_LOG_DEBUG("VESKThreadTimer::StartRoutine", "timer runloop end");
}

bool VESKThreadTimer::TakeStopRequest() {
    return mStopRequested.exchange(false);
}

TimerDeadline VESKThreadTimer::Deadline(double interval, int64_t seconds, int32_t milliseconds) {
    const double factor = std::pow(10.0F, 9.0F);
    const int64_t nanoseconds = static_cast<int64_t>(interval * factor);
    const int64_t wholeSeconds = nanoseconds / kNanosecondsPerSecond;
    TimerDeadline deadline = {seconds + wholeSeconds, 0};
    deadline.nanoseconds = static_cast<int32_t>(nanoseconds - wholeSeconds * kNanosecondsPerSecond +
                                                static_cast<int64_t>(milliseconds) * 1000);
    if (deadline.nanoseconds >= kNanosecondsPerSecond) {
        deadline.nanoseconds -= kNanosecondsPerSecond;
        ++deadline.seconds;
    }
    return deadline;
}

int VESKThreadTimer::runloop(double seconds) {
    VESK_LOG_DEBUG("VESKThreadTimer::runloop", "Timer thread will circulation");
    pthread_mutex_lock(&mMutex);
    if (TakeStopRequest()) {
        VESK_LOG_DEBUG("VESKThreadTimer::runloop", "timer will return");
        pthread_mutex_unlock(&mMutex);
        return 1;
    }
    for (;;) {
        VESK_LOG_DEBUG("VESKThreadTimer::runloop", "timer is waiting");
        const os::WallTime now = os::Now();
        const TimerDeadline deadline = Deadline(seconds, now.seconds, now.milliseconds);
        timespec until = {};
        until.tv_sec = static_cast<time_t>(deadline.seconds);
        until.tv_nsec = deadline.nanoseconds;
        pthread_cond_timedwait(&mCondition, &mMutex, &until);
        VESK_LOG_DEBUG("VESKThreadTimer::runloop", "timer wakeup");
        if (TakeStopRequest()) {
            VESK_LOG_DEBUG("VESKThreadTimer::runloop", "timer wakeup, will return");
            break;
        }
        pthread_mutex_unlock(&mMutex);
        VESK_LOG_DEBUG("VESKThreadTimer::runloop", "timer running");
        if (callback != nullptr) {
            callback(context, this);
        }
        if (TakeStopRequest()) {
            return 1;
        }
        VESK_LOG_DEBUG("VESKThreadTimer::runloop", "timer will while");
        pthread_mutex_lock(&mMutex);
        if (TakeStopRequest()) {
            VESK_LOG_DEBUG("VESKThreadTimer::runloop", "timer will return");
            break;
        }
    }
    pthread_mutex_unlock(&mMutex);
    return 1;
}

} // namespace VESK
} // namespace Braxel
