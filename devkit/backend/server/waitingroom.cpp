#include "server/waitingroom.h"

namespace vesk::backend {

bool WaitingRoom::waitFor(std::chrono::milliseconds time) {
    std::unique_lock<std::mutex> lock(mMutex);
    return mNews.wait_for(lock, time, [this] { return mClosed; });
}

void WaitingRoom::noteChange() {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        ++mChanges;
    }
    mNews.notify_all();
}

void WaitingRoom::waitUntil(const std::function<bool()>& isSo, std::chrono::milliseconds time) {
    std::unique_lock<std::mutex> lock(mMutex);
    mNews.wait_for(lock, time, [&] { return mClosed || isSo(); });
}

bool WaitingRoom::waitForChange(uint64_t& seen, std::chrono::milliseconds time) {
    std::unique_lock<std::mutex> lock(mMutex);
    mNews.wait_for(lock, time, [&] { return mClosed || mChanges != seen; });
    seen = mChanges;
    return !mClosed;
}

void WaitingRoom::close() {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mClosed = true;
    }
    mNews.notify_all();
}

} // namespace vesk::backend
