#include "foundation/lifecycle/veskcallgate.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "platformimpl/foundation/os/mutex.h"
#include "platformimpl/foundation/os/thread.h"

namespace Braxel {
namespace VESK {

bool VESKCallGate::Enter() {
    const std::lock_guard<os::Mutex> lock(mMutex);
    if (mClosed) {
        return false;
    }
    mInside.push_back(os::CurrentThreadId());
    return true;
}

void VESKCallGate::Leave() {
    const std::lock_guard<os::Mutex> lock(mMutex);
    const auto entry = std::find(mInside.begin(), mInside.end(), os::CurrentThreadId());
    if (entry != mInside.end()) {
        mInside.erase(entry);
    }
}

bool VESKCallGate::OthersInside() {
    const std::lock_guard<os::Mutex> lock(mMutex);
    const uint64_t self = os::CurrentThreadId();
    return std::any_of(mInside.begin(), mInside.end(),
                       [self](uint64_t thread) { return thread != self; });
}

void VESKCallGate::Close() {
    // By the clock: a short sleep takes as long as the system's timer likes, on Windows three times.
    const auto until = std::chrono::steady_clock::now() + kPatience;
    {
        const std::lock_guard<os::Mutex> lock(mMutex);
        mClosed = true;
    }
    while (OthersInside() && std::chrono::steady_clock::now() < until) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

} // namespace VESK
} // namespace Braxel
