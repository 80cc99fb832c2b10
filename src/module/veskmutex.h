#ifndef VESK_MODULE_VESKMUTEX_H
#define VESK_MODULE_VESKMUTEX_H

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
    void* mState = nullptr;
};
#else
using VESKMutex = std::mutex;
#endif

} // namespace VESK
} // namespace Braxel

#endif
