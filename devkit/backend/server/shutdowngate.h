#ifndef VESK_DEVKIT_BACKEND_SERVER_SHUTDOWNGATE_H
#define VESK_DEVKIT_BACKEND_SERVER_SHUTDOWNGATE_H

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace vesk::backend {

/// Requests wait here instead of sleeping, so that the program can end while they do.
class ShutdownGate {
public:
    /// Waits for that long, or until the program ends.
    /// @return whether the program ends.
    bool waitFor(std::chrono::milliseconds time);

    /// The program ends: wakes everybody, and nobody waits any more.
    void close();

private:
    std::mutex mMutex;
    std::condition_variable mClosing;
    bool mClosed = false;
};

} // namespace vesk::backend

#endif
