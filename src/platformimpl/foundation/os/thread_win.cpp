#include "platformimpl/foundation/os/thread.h"

#include <windows.h>
#include <atomic>
#include <cerrno>
#include <new>

namespace Braxel {
namespace VESK {
namespace os {

namespace {

struct ThreadStart {
    ThreadRoutine routine;
    void* argument;
    HMODULE module;
};

std::atomic<int> gRunning{0};

/// Set for the threads that are started here.
struct Mark {
    Mark() = default;
    Mark(const Mark&) = delete;
    Mark& operator=(const Mark&) = delete;
    ~Mark() { TlsFree(slot); }
    const DWORD slot = TlsAlloc();
};
Mark gMark;

HMODULE ReferenceOwnModule();

void* RunThread(void* context) {
    TlsSetValue(gMark.slot, &gMark);
    const ThreadStart start = *static_cast<ThreadStart*>(context);
    delete static_cast<ThreadStart*>(context);
    try {
        start.routine(start.argument);
    } catch (...) { // NOLINT(bugprone-empty-catch): nobody is left to tell
    }
    // Never return instead: a plain release followed by a return runs unmapped code.
    FreeLibraryAndExitThread(start.module, 0);
}

HMODULE ReferenceOwnModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&ReferenceOwnModule), &module);
    return module;
}

} // namespace

int StartDetachedThread(pthread_t* thread, ThreadRoutine routine, void* argument) {
    HMODULE module = ReferenceOwnModule();
    ThreadStart* start = new (std::nothrow) ThreadStart{routine, argument, module};
    int result = EAGAIN;
    if (module != nullptr && start != nullptr) {
        ++gRunning;
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
        // Of a program whose threads get more, ours get as much: Windows takes it as the least.
        pthread_attr_setstacksize(&attributes, kThreadStack);
        result = pthread_create(thread, &attributes, &RunThread, start);
        pthread_attr_destroy(&attributes);
        if (result != 0) {
            --gRunning;
        }
    }
    if (result != 0) {
        delete start;
        if (module != nullptr) {
            FreeLibrary(module);
        }
    }
    return result;
}

int RunningThreads() {
    return gRunning;
}

void ThreadHasEnded() {
    if (TlsGetValue(gMark.slot) != nullptr) {
        --gRunning;
    }
}

uint64_t CurrentThreadId() {
    return GetCurrentThreadId();
}

void BlockBrokenPipeSignal() {}

} // namespace os
} // namespace VESK
} // namespace Braxel
