#ifndef VESK_SIMULATORS_KZ_LOCK_H
#define VESK_SIMULATORS_KZ_LOCK_H

#include <windows.h>

namespace vesk::kzsim {

/// A lock, and a signal for those who wait for a change under it. Made of what needs neither a
/// handle nor data of a thread: a program that loads and frees this library again and again loses
/// nothing.
class Lock {
public:
    Lock() = default;
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    void lock() { AcquireSRWLockExclusive(&mLock); }
    void unlock() { ReleaseSRWLockExclusive(&mLock); }

    /// Called with the lock held, which is free while this waits.
    void wait(DWORD milliseconds) { SleepConditionVariableSRW(&mChanged, &mLock, milliseconds, 0); }
    void signal() { WakeAllConditionVariable(&mChanged); }

private:
    SRWLOCK mLock = SRWLOCK_INIT;
    CONDITION_VARIABLE mChanged = CONDITION_VARIABLE_INIT;
};

} // namespace vesk::kzsim

#endif
