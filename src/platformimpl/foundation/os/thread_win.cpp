#include "platformimpl/foundation/os/thread.h"

#include <cerrno>
#include <new>
#include <windows.h>

namespace Braxel {
namespace VESK {
namespace os {

namespace {

struct ThreadStart {
    ThreadRoutine routine;
    void* argument;
    HMODULE module;
};

HMODULE ReferenceOwnModule();

void* RunThread(void* context) {
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
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
        result = pthread_create(thread, &attributes, &RunThread, start);
        pthread_attr_destroy(&attributes);
    }
    if (result != 0) {
        delete start;
        if (module != nullptr) {
            FreeLibrary(module);
        }
    }
    return result;
}

uint64_t CurrentThreadId() {
    return GetCurrentThreadId();
}

void BlockBrokenPipeSignal() {}

} // namespace os
} // namespace VESK
} // namespace Braxel
