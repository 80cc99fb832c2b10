#ifndef VESK_DEVKIT_SIMULATORS_KZ_LISTENERS_H
#define VESK_DEVKIT_SIMULATORS_KZ_LISTENERS_H

#include <map>
#include <memory>
#include <vector>

#include "comsupport.h"
#include "kzopensdk.h"
#include "server.h"

namespace vesk::kzsim {

/// Somebody who hears the events, through its own interface of the contract or, @p dispatched,
/// through IDispatch. The last one to let go of it gives the listener back.
class Listener {
public:
    using Pointer = std::shared_ptr<Listener>;

    virtual ~Listener() = default;
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    virtual HRESULT notify(LONG type, IKZProperties* result) = 0;

    /// Holds the listener itself.
    static HRESULT hold(IUnknown* advised, bool dispatched, Pointer& made);

    /// Leaves it in the process's global interface table and fetches it from there for each event,
    /// as a component does whose objects live in an apartment. Needs COM on the calling thread.
    static HRESULT deposit(IUnknown* advised, bool dispatched, Pointer& made);

protected:
    Listener() = default;
};

/// The listeners that are advised now. They are called, and released, without the lock.
class Listeners {
public:
    Listeners() = default;
    Listeners(const Listeners&) = delete;
    Listeners& operator=(const Listeners&) = delete;

    /// @return the cookie, never 0.
    DWORD add(const Listener::Pointer& listener);

    /// @return whether there was one under this cookie.
    bool remove(DWORD cookie);

    /// Instead of remove(): it stays among the listeners, and with @p forever is never released.
    bool keep(DWORD cookie, bool forever);

    std::vector<Listener::Pointer> all() const;

private:
    mutable Lock mLock;
    DWORD mLastCookie = 0;
    std::map<DWORD, Listener::Pointer> mListeners;
};

} // namespace vesk::kzsim

#endif
