#ifndef VESK_DEVKIT_SIMULATORS_KZ_EVENTS_H
#define VESK_DEVKIT_SIMULATORS_KZ_EVENTS_H

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "propertybag.h"
#include "simulator.h"

namespace vesk::kzsim {

/// What a listener hears: a notify type and a result object, which may be null.
struct Event {
    LONG type = 0;
    PropertyBag::Pointer bag;
};

/// An event and how many milliseconds after the step before it (the first one: after the call) it
/// comes.
struct Step {
    ULONGLONG delay = 0;
    Event event;
};

using Script = std::vector<Step>;

/// The events that follow a call, as the setting @p key lists them, late when "late_ms" says so. A
/// step that cannot be read is written down as a problem and left out; its delay counts all the
/// same.
Script readScript(const simulator::Settings& settings, const char* key);

/// The same for steps that come from elsewhere; problems are written down under the name @p key.
Script readSteps(const simulator::Settings& settings, const char* key, const std::string& steps);

/// Somebody who hears the events. The last one to let go of it gives the listener back.
class Listener {
public:
    using Pointer = std::shared_ptr<Listener>;

    /// @param dispatched through IDispatch, not through the contract's own interface
    explicit Listener(bool dispatched) : mDispatched(dispatched) {}
    ~Listener();
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /// Holds the listener itself.
    HRESULT hold(IUnknown* advised);

    /// Leaves it in the process's global interface table and fetches it from there for each event,
    /// as a component does whose objects live in an apartment. Needs COM on the calling thread.
    HRESULT deposit(IUnknown* advised);

    HRESULT notify(LONG type, IKZProperties* result) const;

private:
    const bool mDispatched;
    Braxel::VESK::ComPtr<IUnknown> mEvents;
    DWORD mDeposit = 0; // in the table, where 0 is nobody's
};

/// The listeners that are advised now. They are called, and released, without the lock.
class Listeners {
public:
    Listeners() = default;
    Listeners(const Listeners&) = delete;
    Listeners& operator=(const Listeners&) = delete;

    /// @return the cookie, never 0.
    DWORD add(const Listener::Pointer& listener);

    /// @param keep the setting "keep_sink"
    /// @return whether there was one under this cookie.
    bool remove(DWORD cookie, int64_t keep);

    std::vector<Listener::Pointer> all() const;

private:
    mutable Lock mLock;
    DWORD mLastCookie = 0;
    std::map<DWORD, Listener::Pointer> mListeners;
};

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
