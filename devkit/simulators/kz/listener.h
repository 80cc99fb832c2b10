#ifndef VESK_SIMULATORS_KZ_LISTENER_H
#define VESK_SIMULATORS_KZ_LISTENER_H

#include <memory>

#include "comsupport.h"
#include "kzopensdk.h"

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

} // namespace vesk::kzsim

#endif
