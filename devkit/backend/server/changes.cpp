#include "server/changes.h"

namespace vesk::backend {

void Changes::note() {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        ++mCount;
    }
    mChanged.notify_all();
}

bool Changes::waitBeyond(uint64_t& seen, std::chrono::milliseconds time) {
    std::unique_lock<std::mutex> lock(mMutex);
    mChanged.wait_for(lock, time, [&] { return mClosed || mCount != seen; });
    seen = mCount;
    return !mClosed;
}

void Changes::close() {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mClosed = true;
    }
    mChanged.notify_all();
}

} // namespace vesk::backend
