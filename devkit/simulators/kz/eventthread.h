#ifndef VESK_DEVKIT_SIMULATORS_KZ_EVENTTHREAD_H
#define VESK_DEVKIT_SIMULATORS_KZ_EVENTTHREAD_H

#include <map>
#include <memory>

#include "listeners.h"
#include "script.h"

namespace vesk::kzsim {

/// Delivers events one after another on a thread of its own, which keeps this library loaded until
/// it has left it.
class EventThread {
public:
    /// Null when the system has no thread to give.
    static std::shared_ptr<EventThread> start(std::shared_ptr<Listeners> listeners);

    /// Delivers the script's events from now on, besides those that are still to come.
    /// @return how many events had been delivered before.
    unsigned play(const Script& script);

    /// Waits until one more event than @p before was delivered, but not forever.
    bool waitForMoreThan(unsigned before);

    bool isThisThread() const { return GetCurrentThreadId() == mId; }

    /// No further event begins, and one that is being delivered is waited for, unless this is its
    /// own thread. To be called once, and nothing afterwards.
    void stop();

    /// The thread ends by itself when all events are delivered. To be called once, and nothing
    /// afterwards.
    void leaveAlone();

private:
    explicit EventThread(std::shared_ptr<Listeners> listeners) : mListeners(std::move(listeners)) {}

    static DWORD WINAPI run(void* thread);
    bool takeNext(Event& event);
    void deliver(const Event& event);
    bool isStopping();

    const std::shared_ptr<Listeners> mListeners;
    std::shared_ptr<EventThread> mItself; // while it runs
    HMODULE mModule = nullptr;
    HANDLE mHandle = nullptr;
    DWORD mId = 0;

    Lock mLock; // guards what follows
    std::multimap<ULONGLONG, Event> mToCome;
    unsigned mDelivered = 0;
    bool mIsStopping = false;
    bool mEndsWhenIdle = false;
};

} // namespace vesk::kzsim

#endif
