#ifndef VESK_DEVKIT_BACKEND_SERVER_WAITINGROOM_H
#define VESK_DEVKIT_BACKEND_SERVER_WAITINGROOM_H

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace vesk::backend {

/// Requests wait here instead of sleeping, for a time or for a change of the state that they show,
/// so that the program can end while they do. Safe to use from several threads.
class WaitingRoom {
public:
    /// Waits for that long, or until the program ends.
    /// @return whether the program ends.
    bool waitFor(std::chrono::milliseconds time) {
        std::unique_lock<std::mutex> lock(mMutex);
        return mNews.wait_for(lock, time, [this] { return mClosed; });
    }

    /// Something that is shown has changed. The caller holds no lock that a condition takes.
    void noteChange() {
        {
            const std::lock_guard<std::mutex> lock(mMutex);
            ++mChanges;
        }
        mNews.notify_all();
    }

    /// Waits until a change has brought @p isSo about; for @p time at most, and not at all once the
    /// program ends.
    template <typename Condition>
    void waitUntil(Condition isSo, std::chrono::milliseconds time) {
        std::unique_lock<std::mutex> lock(mMutex);
        mNews.wait_for(lock, time, [&] { return mClosed || isSo(); });
    }

    /// Waits in that way for a change after the count @p seen, which is then the newest one.
    /// @return whether the program goes on.
    bool waitForChange(uint64_t& seen, std::chrono::milliseconds time) {
        std::unique_lock<std::mutex> lock(mMutex);
        mNews.wait_for(lock, time, [&] { return mClosed || mChanges != seen; });
        seen = mChanges;
        return !mClosed;
    }

    /// The program ends: wakes everybody, and nobody waits any more.
    void close() {
        {
            const std::lock_guard<std::mutex> lock(mMutex);
            mClosed = true;
        }
        mNews.notify_all();
    }

private:
    std::mutex mMutex;
    std::condition_variable mNews;
    uint64_t mChanges = 1;
    bool mClosed = false;
};

} // namespace vesk::backend

#endif
