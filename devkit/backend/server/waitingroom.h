#ifndef VESK_DEVKIT_BACKEND_SERVER_WAITINGROOM_H
#define VESK_DEVKIT_BACKEND_SERVER_WAITINGROOM_H

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>

namespace vesk::backend {

/// Requests wait here instead of sleeping, for a time or for a change of the state that they show,
/// so that the program can end while they do. Safe to use from several threads.
class WaitingRoom {
public:
    /// Waits for that long, or until the program ends.
    /// @return whether the program ends.
    bool waitFor(std::chrono::milliseconds time);

    /// Something that is shown has changed. The caller holds no lock that a condition takes.
    void noteChange();

    /// Waits until a change has brought @p isSo about; for @p time at most, and not at all once the
    /// program ends.
    void waitUntil(const std::function<bool()>& isSo, std::chrono::milliseconds time);

    /// Waits in that way for a change after the count @p seen, which is then the newest one.
    /// @return whether the program goes on.
    bool waitForChange(uint64_t& seen, std::chrono::milliseconds time);

    /// The program ends: wakes everybody, and nobody waits any more.
    void close();

private:
    std::mutex mMutex;
    std::condition_variable mNews;
    uint64_t mChanges = 1;
    bool mClosed = false;
};

} // namespace vesk::backend

#endif
