#ifndef VESK_FOUNDATION_LIFECYCLE_VESKCALLGATE_H
#define VESK_FOUNDATION_LIFECYCLE_VESKCALLGATE_H

#include <chrono>

#include "foundation/lifecycle/veskthreadlist.h"
#include "module/veskmutex.h"

namespace Braxel {
namespace VESK {

/// Lets calls through until it is closed, and can tell when the last one has come back. No lock is
/// held during a call.
class VESKCallGate {
public:
    /// One call through the gate, for as long as the object lives.
    class Pass {
    public:
        explicit Pass(VESKCallGate& gate) : mGate(gate), mEntered(gate.Enter(mEntry)) {}
        ~Pass() {
            if (mEntered) {
                mGate.Leave(mEntry);
            }
        }
        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;

        /// False when the gate was closed: do not make the call.
        explicit operator bool() const { return mEntered; }

    private:
        VESKCallGate& mGate;
        VESKThreadList::Entry mEntry;
        const bool mEntered;
    };

    /// Closes the gate for good and waits until the calls of other threads have come back. Calls
    /// that this thread is in the middle of are not waited for, and no call for longer than
    /// kPatience: it may be waiting for this thread.
    void Close();

    /// UnInstall's contract in vesklogin.h names it.
    static constexpr std::chrono::milliseconds kPatience{750};

private:
    bool Enter(VESKThreadList::Entry& entry);
    void Leave(VESKThreadList::Entry& entry);
    bool OthersInside();

    VESKMutex mMutex;
    bool mClosed = false;
    VESKThreadList mInside;
};

} // namespace VESK
} // namespace Braxel

#endif
