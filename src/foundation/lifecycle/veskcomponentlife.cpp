#include "foundation/lifecycle/veskcomponentlife.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "foundation/log/vesklogger.h"
#include "platformimpl/foundation/os/thread.h"

namespace Braxel {
namespace VESK {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPoll(10);

/// For a start by another thread: a component may wait for the very thread that waits here.
constexpr std::chrono::seconds kStartPatience(15);

} // namespace

VESKComponentLife::~VESKComponentLife() {
    while (IsReaping()) {
        std::this_thread::sleep_for(kPoll);
    }
}

/// Asked with the lock held, which the reaper must have let go of before this object goes.
bool VESKComponentLife::IsReaping() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return mReaping;
}

/// Whatever the game unloads, what a component may call back is there. With the lock held.
void VESKComponentLife::KeepModule() {
    if (!mModule && mRest.count() != 0) {
        mModule.emplace();
    }
}

// ---- Start ----

bool VESKComponentLife::TakeStart() {
    const uint64_t self = os::CurrentThreadId();
    const auto until = Clock::now() + kStartPatience;
    do {
        {
            const std::lock_guard<VESKMutex> lock(mMutex);
            const bool starting = mStage == Stage::kStarting;
            if (mStage == Stage::kRunning || mStage == Stage::kEnded ||
                (starting && mStarter == self)) {
                return false;
            }
            if (!starting && !IsStopping()) {
                mStage = Stage::kStarting;
                mStarter = self;
                return true;
            }
        }
        std::this_thread::sleep_for(kPoll);
    } while (Clock::now() < until);
    return false;
}

bool VESKComponentLife::Start::Publish() {
    const std::lock_guard<VESKMutex> lock(mLife.mMutex);
    mLife.KeepModule(); // also for one that has to be stopped again, whatever comes of that
    if (mLife.mStage != Stage::kStarting) {
        return false;
    }
    mLife.mStage = Stage::kRunning;
    return true;
}

VESKComponentLife::Start::~Start() {
    if (!mTaken) {
        return;
    }
    {
        const std::lock_guard<VESKMutex> lock(mLife.mMutex);
        if (mLife.mStage != Stage::kStarting) {
            return;
        }
        mLife.mStage = Stage::kIdle;
        if (mLife.mLeaving.empty()) {
            return;
        }
        ++mLife.mDepartures; // the releasing thread may just be leaving those to this start
    }
    mLife.StartReaper();
}

VESKComponentLife::Stage VESKComponentLife::End() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return mStage.exchange(Stage::kEnded);
}

// ---- Calls and callbacks ----

VESKComponentLife::Call::Call(VESKComponentLife& life) : mLife(life) {
    const std::lock_guard<VESKMutex> lock(mLife.mMutex);
    if (mLife.mStage != Stage::kEnded) {
        mLife.mCalls.Add(mEntry);
        mEntered = true;
    }
}

VESKComponentLife::Call::~Call() {
    if (mEntered) {
        const std::lock_guard<VESKMutex> lock(mLife.mMutex);
        mLife.mCalls.Remove(mEntry);
    }
}

VESKComponentLife::Callback::Callback(VESKComponentLife& life) : mLife(life) {
    const std::lock_guard<VESKMutex> lock(mLife.mMutex);
    mHeard = mLife.mStage != Stage::kEnded;
    mLife.mCallbacks.Add(mEntry);
}

VESKComponentLife::Callback::~Callback() {
    const std::lock_guard<VESKMutex> lock(mLife.mMutex);
    mLife.mCallbacks.Remove(mEntry);
    mLife.mLastSign = Clock::now();
}

// ---- Departure ----

/// Whether a component that goes is still to be stopped. With the lock held.
bool VESKComponentLife::IsStopping() const {
    return std::any_of(mLeaving.begin(), mLeaving.end(), [](const auto& leaving) {
        return leaving->stop == Stop::kOpen || leaving->stop == Stop::kUnderWay;
    });
}

void VESKComponentLife::Depart(Departure departure) {
    const auto leaving = std::make_shared<Leaving>();
    leaving->how = std::move(departure);
    bool atOnce = false;
    {
        const std::lock_guard<VESKMutex> lock(mMutex);
        mLeaving.push_back(leaving);
        KeepModule();
        // Stopped inside a callback of its own, a component may well wait for that callback.
        atOnce = mCalls.IsEmpty() && !mCallbacks.HasThisThread();
        leaving->stop = atOnce ? Stop::kUnderWay : Stop::kOpen;
        ++mDepartures;
    }
    if (atOnce) {
        RunStop(*leaving);
    }
    if (mRest.count() == 0 && IsAtRest()) {
        Unload();
    } else {
        StartReaper();
    }
}

void VESKComponentLife::RunStop(Leaving& leaving) {
    const bool stopped = leaving.how.stop();
    const std::lock_guard<VESKMutex> lock(mMutex);
    mLastSign = Clock::now();
    leaving.stop = stopped ? Stop::kDone : Stop::kFailed;
}

void VESKComponentLife::StopWhenNobodyIsInside() {
    while (true) {
        std::shared_ptr<Leaving> next;
        {
            const std::lock_guard<VESKMutex> lock(mMutex);
            const auto found =
                std::find_if(mLeaving.begin(), mLeaving.end(),
                             [](const auto& leaving) { return leaving->stop == Stop::kOpen; });
            if (!mCalls.IsEmpty() || found == mLeaving.end()) {
                return;
            }
            next = *found;
            next->stop = Stop::kUnderWay;
        }
        RunStop(*next);
    }
}

/// Whether another start has followed a failed one: they have the same file, and what is left of
/// the first goes with the last.
bool VESKComponentLife::IsStartedAnew() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return (mStage == Stage::kStarting || mStage == Stage::kRunning) && !IsStopping();
}

bool VESKComponentLife::IsAtRest() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return mCalls.IsEmpty() && mCallbacks.IsEmpty() && Clock::now() - mLastSign >= mRest &&
           std::all_of(mLeaving.begin(), mLeaving.end(),
                       [](const auto& leaving) { return leaving->stop == Stop::kDone; });
}

bool VESKComponentLife::CannotBeStopped() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return std::any_of(mLeaving.begin(), mLeaving.end(),
                       [](const auto& leaving) { return leaving->stop == Stop::kFailed; });
}

void VESKComponentLife::Unload() {
    std::vector<std::shared_ptr<Leaving>> leaving;
    {
        const std::lock_guard<VESKMutex> lock(mMutex);
        leaving.swap(mLeaving);
    }
    // Twice: those who were started one after the other have the same file, and it is gone when the
    // last of them has given it back.
    for (int round = 0; round < 2; ++round) {
        leaving.erase(std::remove_if(leaving.begin(), leaving.end(),
                                     [](const auto& component) { return component->how.unload(); }),
                      leaving.end());
    }
    {
        const std::lock_guard<VESKMutex> lock(mMutex);
        mLeaving.insert(mLeaving.end(), leaving.begin(), leaving.end());
        if (mStage == Stage::kStarting || mStage == Stage::kRunning) {
            return; // it has the file, and it may call back
        }
        if (mLeaving.empty()) {
            VESK_LOG_DEBUG("VESKComponentLife::Unload",
                           "the component has come to rest, nothing of it can come back");
            mModule.reset();
        }
    }
    if (!leaving.empty()) {
        Stay();
    }
}

void VESKComponentLife::Stay() {
    VESK_LOG_ERROR("VESKComponentLife::Stay",
                   "the component may still call back: it stays loaded, and so does the SDK");
    VESKModule::StayLoaded();
}

void VESKComponentLife::Reap() {
    const auto until = Clock::now() + mPatience;
    do {
        std::this_thread::sleep_for(kPoll);
        StopWhenNobodyIsInside();
        if (IsStartedAnew()) {
            return;
        }
        if (IsAtRest()) {
            Unload();
            return;
        }
    } while (!CannotBeStopped() && Clock::now() < until);
    Stay();
}

void VESKComponentLife::ReapOnThread(void* context) {
    VESKComponentLife* life = static_cast<VESKComponentLife*>(context);
    unsigned departures = 0;
    do {
        {
            const std::lock_guard<VESKMutex> lock(life->mMutex);
            departures = life->mDepartures;
        }
        try {
            life->Reap();
        } catch (...) {
            life->Stay();
        }
    } while (!life->EndReaping(departures));
}

/// False when a component has left since there had been @p departures, and is still to be seen to.
bool VESKComponentLife::EndReaping(unsigned departures) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    mReaping = departures != mDepartures;
    return !mReaping;
}

void VESKComponentLife::StartReaper() {
    {
        const std::lock_guard<VESKMutex> lock(mMutex);
        if (mReaping) {
            return;
        }
        mReaping = true;
    }
    if (os::StartDetachedThread(&ReapOnThread, this) != 0) {
        Stay();
        const std::lock_guard<VESKMutex> lock(mMutex);
        mReaping = false;
    }
}

} // namespace VESK
} // namespace Braxel
