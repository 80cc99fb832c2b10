#include "foundation/lifecycle/veskcallgate.h"

#include <chrono>
#include <thread>

#include "module/veskmutex.h"

namespace Braxel {
namespace VESK {

bool VESKCallGate::Enter(VESKThreadList::Entry& entry) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (mClosed) {
        return false;
    }
    mInside.Add(entry);
    return true;
}

void VESKCallGate::Leave(VESKThreadList::Entry& entry) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    mInside.Remove(entry);
}

bool VESKCallGate::OthersInside() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return mInside.HasAnotherThread();
}

void VESKCallGate::Close() {
    // By the clock: a short sleep takes as long as the system's timer likes, thrice on Windows.
    const auto until = std::chrono::steady_clock::now() + kPatience;
    {
        const std::lock_guard<VESKMutex> lock(mMutex);
        mClosed = true;
    }
    while (OthersInside() && std::chrono::steady_clock::now() < until) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

} // namespace VESK
} // namespace Braxel
