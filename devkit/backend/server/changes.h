#ifndef VESK_DEVKIT_BACKEND_SERVER_CHANGES_H
#define VESK_DEVKIT_BACKEND_SERVER_CHANGES_H

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace vesk::backend {

/// Counts changes, so that whoever shows the state need not ask for it all the time. Safe to use
/// from several threads.
class Changes {
public:
    void note();

    /// Waits for a change after the count @p seen, which is then the newest one; for @p time at
    /// most, and not at all once the program ends.
    /// @return whether the program goes on.
    bool waitBeyond(uint64_t& seen, std::chrono::milliseconds time);

    /// The program ends: wakes everybody, and nobody waits any more.
    void close();

private:
    std::mutex mMutex;
    std::condition_variable mChanged;
    uint64_t mCount = 1;
    bool mClosed = false;
};

} // namespace vesk::backend

#endif
