#ifndef VESK_PLATFORMIMPL_FOUNDATION_OS_MUTEX_H
#define VESK_PLATFORMIMPL_FOUNDATION_OS_MUTEX_H

#include <mutex>

namespace Braxel {
namespace VESK {
namespace os {

/// A lock that may be left behind without being destroyed, as process-wide objects do. On Windows
/// a std::mutex would lose memory and a handle with each unload of the library.
#ifdef _WIN32
class Mutex {
public:
    Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void lock() noexcept;
    void unlock() noexcept;

private:
    void* mState = nullptr;
};
#else
using Mutex = std::mutex;
#endif

} // namespace os
} // namespace VESK
} // namespace Braxel

#endif
