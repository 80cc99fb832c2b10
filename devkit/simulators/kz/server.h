#ifndef VESK_DEVKIT_SIMULATORS_KZ_SERVER_H
#define VESK_DEVKIT_SIMULATORS_KZ_SERVER_H

#include <windows.h>
#include <atomic>
#include <string>

namespace vesk::kzsim {

/// An id of the contract, which has them in their text form.
GUID idOf(const char* text);

/// Writes down what a real component would not accept, or a script that cannot be followed.
void writeProblem(const std::string& what);

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

/// A member of every COM object: they keep the library in use. When the last one goes, that is
/// written down.
class LiveObject {
public:
    LiveObject() { ++sCount; }
    ~LiveObject();
    LiveObject(const LiveObject&) = delete;
    LiveObject& operator=(const LiveObject&) = delete;

    static long count() { return sCount; }

private:
    inline static std::atomic<long> sCount{0};
};

} // namespace vesk::kzsim

#endif
