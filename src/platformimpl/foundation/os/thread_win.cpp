#include "platformimpl/foundation/os/thread.h"

#include <windows.h>
#include <cerrno>

#include "module/veskunload_win.h"
#include "platformimpl/foundation/os/threadhold.h"

namespace Braxel {
namespace VESK {
namespace os {

ThreadHold::ThreadHold() {
    HMODULE own = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&EnterThread), &own);
    taken = own != nullptr;
    module = own;
    if (taken) {
        unload::ThreadStarts();
    }
}

void GiveBack(const ThreadHold& hold) {
    unload::ThreadHasNotStarted();
    FreeLibrary(static_cast<HMODULE>(hold.module));
}

void EnterThread() {
    unload::MarkThread();
}

void LeaveThread(const ThreadHold& hold) {
    // Never return instead: a plain release followed by a return runs unmapped code.
    FreeLibraryAndExitThread(static_cast<HMODULE>(hold.module), 0);
}

namespace {

DWORD WINAPI ThreadMain(void* start) {
    RunThread(start);
    return 0;
}

} // namespace

// Not through the POSIX thread library: its list of threads has a lock that lives in this module
// and leaves an event behind at the unload whenever two threads have met at it. The size is the
// least: of a program whose threads get more, ours get as much.
int StartSystemThread(void* start) {
    HANDLE thread = CreateThread(nullptr, kThreadStack, &ThreadMain, start, 0, nullptr);
    if (thread == nullptr) {
        return EAGAIN;
    }
    CloseHandle(thread);
    return 0;
}

uint64_t CurrentThreadId() {
    return GetCurrentThreadId();
}

void BlockBrokenPipeSignal() {}

} // namespace os
} // namespace VESK
} // namespace Braxel
