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

static_assert(sizeof(CONDITION_VARIABLE) == sizeof(void*), "as above");

void VESKCondition::wait(std::unique_lock<VESKMutex>& lock) noexcept {
    SleepConditionVariableSRW(reinterpret_cast<CONDITION_VARIABLE*>(&mState),
                              reinterpret_cast<SRWLOCK*>(&lock.mutex()->mState), INFINITE, 0);
}

void VESKCondition::notify_all() noexcept {
    WakeAllConditionVariable(reinterpret_cast<CONDITION_VARIABLE*>(&mState));
}

} // namespace VESK
} // namespace Braxel
