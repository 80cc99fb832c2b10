#include "module/veskmutex.h"

#include <windows.h>

namespace Braxel {
namespace VESK {
// A slim lock is a pointer that needs neither set-up nor clean-up.
static_assert(sizeof(SRWLOCK) == sizeof(void*), "the header declares it without <windows.h>");

void VESKMutex::lock() noexcept {
    AcquireSRWLockExclusive(reinterpret_cast<SRWLOCK*>(&mState));
}

void VESKMutex::unlock() noexcept {
    ReleaseSRWLockExclusive(reinterpret_cast<SRWLOCK*>(&mState));
}

} // namespace VESK
} // namespace Braxel
