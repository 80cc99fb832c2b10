#include "platformimpl/foundation/os/mutex.h"

#include <windows.h>

namespace Braxel {
namespace VESK {
namespace os {

// A slim lock is a pointer that needs neither set-up nor clean-up.
static_assert(sizeof(SRWLOCK) == sizeof(void*), "the header declares it without <windows.h>");

void Mutex::lock() noexcept {
    AcquireSRWLockExclusive(reinterpret_cast<SRWLOCK*>(&mState));
}

void Mutex::unlock() noexcept {
    ReleaseSRWLockExclusive(reinterpret_cast<SRWLOCK*>(&mState));
}

} // namespace os
} // namespace VESK
} // namespace Braxel
