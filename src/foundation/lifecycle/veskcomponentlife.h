#ifndef VESK_FOUNDATION_LIFECYCLE_VESKCOMPONENTLIFE_H
#define VESK_FOUNDATION_LIFECYCLE_VESKCOMPONENTLIFE_H

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "foundation/lifecycle/veskthreadlist.h"
#include "module/veskmodule.h"
#include "module/veskmutex.h"

namespace Braxel {
namespace VESK {

/// The life of a channel's component: it is started once, whoever asks; every call into it and
/// every callback out of it is counted; and once it has been ended, what belongs to it and this
/// library stay until nothing of it can come back any more. A component that cannot be stopped,
/// or does not come to rest in half a minute, stays in the process for good, and this
/// library with it.
///
/// No lock is held while a component runs. An object outlives what it counts, and its destructor
/// waits for the releasing thread: make it the last member of whoever has it.
class VESKComponentLife {
public:
    using Milliseconds = std::chrono::milliseconds;

    /// How long a stopped component has to be silent until its file may go, and for how long that
    /// is waited for.
    static constexpr Milliseconds kRest{3000};
    static constexpr Milliseconds kPatience{30000};

    /// @param rest zero for a component that never calls back: it may go as soon as it is stopped.
    explicit VESKComponentLife(Milliseconds rest = kRest, Milliseconds patience = kPatience)
        : mRest(rest), mPatience(patience) {}
    ~VESKComponentLife();

    enum class Stage { kIdle, kStarting, kRunning, kEnded };

    /// The right to start the component, for as long as the object lives. Waits while another
    /// thread has it, for 15 seconds at most.
    class Start {
    public:
        explicit Start(VESKComponentLife& life) : mLife(life), mTaken(life.TakeStart()) {}
        ~Start();
        Start(const Start&) = delete;
        Start& operator=(const Start&) = delete;

        /// False: it runs by now, or must not be started any more, or this very thread starts it.
        explicit operator bool() const { return mTaken; }

        /// The component runs now. False after End(): Depart() undoes the start.
        bool Publish();

    private:
        VESKComponentLife& mLife;
        const bool mTaken;
    };

    /// A call into the component, for as long as the object lives.
    class Call {
    public:
        explicit Call(VESKComponentLife& life);
        ~Call();

        /// False: the component has been ended, do not call it.
        explicit operator bool() const { return mEntered; }

    private:
        VESKComponentLife& mLife;
        VESKThreadList::Entry mEntry;
        bool mEntered = false;
    };

    /// A callback out of the component, for as long as the object lives.
    class Callback {
    public:
        explicit Callback(VESKComponentLife& life);
        ~Callback();

        /// False: the component has been ended, and what it says reaches nobody.
        explicit operator bool() const { return mHeard; }

    private:
        const VESKModule::Use mUse;
        VESKComponentLife& mLife;
        VESKThreadList::Entry mEntry;
        bool mHeard = false;
    };

    bool IsRunning() const { return mStage == Stage::kRunning; }

    /// No start and no call from now on.
    /// @return what it was until now. kStarting: the starter undoes it. kRunning: call Depart().
    Stage End();

    /// How a component goes.
    struct Departure {
        std::function<bool()> stop;   ///< false when it cannot be stopped
        std::function<bool()> unload; ///< once; then whether its file has left the process
    };

    /// Stops the component, at once unless a call is inside it or this thread is in a callback of
    /// it, and unloads it when it has come to rest. Neither is waited for.
    void Depart(Departure departure);

private:
    enum class Stop { kOpen, kUnderWay, kDone, kFailed };
    struct Leaving {
        Departure how;
        Stop stop = Stop::kOpen;
    };
    bool TakeStart();
    void KeepModule();
    bool IsStopping() const;
    void RunStop(Leaving& leaving);
    void StopWhenNobodyIsInside();
    bool IsReaping();
    bool IsStartedAnew();
    bool IsAtRest();
    bool CannotBeStopped();
    void Unload();
    void Stay();
    void Reap();
    bool EndReaping(unsigned departures);
    void StartReaper();
    static void ReapOnThread(void* life);

    const Milliseconds mRest;
    const Milliseconds mPatience;
    VESKMutex mMutex; // guards what follows, and what is atomic for its writers
    std::atomic<Stage> mStage{Stage::kIdle};
    uint64_t mStarter = 0;
    VESKThreadList mCalls;
    VESKThreadList mCallbacks;
    std::chrono::steady_clock::time_point mLastSign;
    std::vector<std::shared_ptr<Leaving>> mLeaving;
    bool mReaping = false;
    unsigned mDepartures = 0;
    std::optional<VESKModule::Reference> mModule; // while something of it may come back
};

} // namespace VESK
} // namespace Braxel

#endif
