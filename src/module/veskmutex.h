#ifndef VESK_MODULE_VESKMUTEX_H
#define VESK_MODULE_VESKMUTEX_H

#include <condition_variable>
#include <mutex>

namespace Braxel {
namespace VESK {
/// A lock that may be left behind without being destroyed, as process-wide objects do. On Windows
/// a std::mutex would lose memory and a handle with each unload of the library.
#ifdef _WIN32
class VESKMutex {
public:
    VESKMutex() = default;
    VESKMutex(const VESKMutex&) = delete;
    VESKMutex& operator=(const VESKMutex&) = delete;

    void lock() noexcept;
    void unlock() noexcept;

private:
    friend class VESKCondition;
    void* mState = nullptr;
};

/// The same for what one waits for under such a lock.
class VESKCondition {
public:
    VESKCondition() = default;
    VESKCondition(const VESKCondition&) = delete;
    VESKCondition& operator=(const VESKCondition&) = delete;

    void wait(std::unique_lock<VESKMutex>& lock) noexcept;
    void notify_all() noexcept;

private:
    void* mState = nullptr;
};
#else
using VESKMutex = std::mutex;
using VESKCondition = std::condition_variable;
#endif

} // namespace VESK
} // namespace Braxel

#endif
