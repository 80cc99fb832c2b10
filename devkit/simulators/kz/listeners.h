#ifndef VESK_DEVKIT_SIMULATORS_KZ_LISTENERS_H
#define VESK_DEVKIT_SIMULATORS_KZ_LISTENERS_H

#include <map>
#include <memory>
#include <vector>

#include "comsupport.h"
#include "kzopensdk.h"
#include "server.h"
#include "simulator.h"

namespace vesk::kzsim {

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

} // namespace vesk::kzsim

#endif
