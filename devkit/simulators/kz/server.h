#ifndef VESK_SIMULATORS_KZ_SERVER_H
#define VESK_SIMULATORS_KZ_SERVER_H

#include <windows.h>
#include <atomic>
#include <string>

namespace vesk::kzsim {

/// What the library knows of itself.
class Server {
public:
    /// A file in the folder that holds this library, whatever the process's working directory is.
    static std::wstring besideMe(const wchar_t* fileName);

    /// A reference on this library, for a thread that leaves through FreeLibraryAndExitThread().
    /// Null when there is none to be had.
    static HMODULE referenceMyself();

    static long liveObjects() { return sObjects; }
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
};

} // namespace vesk::kzsim

#endif
