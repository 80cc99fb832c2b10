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

/// What keeps the library in use.
class Server {
public:
    /// A reference on this library, for a thread that leaves through FreeLibraryAndExitThread().
    /// Null when there is none to be had.
    static HMODULE referenceMyself();

    static bool isInUse() { return sObjects != 0 || sThreads != 0 || sLocks != 0; }

    static void threadStarts() { ++sThreads; }
    static void threadEnds() { --sThreads; }
    static void lock(bool locks) { sLocks += locks ? 1 : -1; }

private:
    friend class LiveObject;

    inline static std::atomic<long> sObjects{0};
    inline static std::atomic<long> sThreads{0};
    inline static std::atomic<long> sLocks{0};
};

/// A member of every COM object. When the last object goes, that is written down.
class LiveObject {
public:
    LiveObject() { ++Server::sObjects; }
    ~LiveObject();
    LiveObject(const LiveObject&) = delete;
    LiveObject& operator=(const LiveObject&) = delete;

    static long count() { return Server::sObjects; }
};

} // namespace vesk::kzsim

#endif
