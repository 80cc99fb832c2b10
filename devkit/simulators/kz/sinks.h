#ifndef VESK_SIMULATORS_KZ_SINKS_H
#define VESK_SIMULATORS_KZ_SINKS_H

#include <map>
#include <vector>

#include "listener.h"
#include "lock.h"

namespace vesk::kzsim {

/// The listeners that are advised now. They are called, and released, without the lock.
class Sinks {
public:
    using Sink = Listener::Pointer;

    Sinks() = default;

    /// @return the cookie, never 0.
    DWORD add(const Sink& sink);

    /// @return whether there was one under this cookie.
    bool remove(DWORD cookie);

    /// Instead of remove(): it stays among the listeners, and with @p forever is never released.
    bool keep(DWORD cookie, bool forever);

    std::vector<Sink> all() const;

private:
    Sinks(const Sinks&) = delete;
    Sinks& operator=(const Sinks&) = delete;

    mutable Lock mLock;
    DWORD mLastCookie = 0;
    std::map<DWORD, Sink> mSinks;
};

} // namespace vesk::kzsim

#endif
