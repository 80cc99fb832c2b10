#include "module/veskunload_win.h"

#include <atomic>
#include <cstdint>
#include <cstdio>

#include "module/veskmodule.h"

// UnInstall gives back the reference with which the game has loaded the library, and the game may
// give it back as well, at any moment. Windows does not tell how many there are. So nothing of ours
// lives on the game's reference: the unloading thread has its own, waits until nobody else of ours
// is left, and drops it. When the library is still there after that, the game's reference is the
// one that keeps it, and a thread that has no code but the system's own drops that.

namespace Braxel {
namespace VESK {
namespace unload {

namespace {

/// How often the unloading thread looks, and the time that a thread which has just left the facade
/// has for the last few instructions of ours.
constexpr DWORD kLeaveMilliseconds = 50;

/// Where a library that leaves tells the next one of its name about a thread that is about to drop
/// a reference: the only memory of the process that both know.
constexpr const wchar_t* kLegacy = L"VESKCORE_UNLOADING";

HMODULE gModule = nullptr;
std::atomic<bool> gStarted{false};
std::atomic<DWORD> gLastOut{0}; // the unloading thread, once nobody else of ours is left
HANDLE gDropper = nullptr;      // drops the game's reference
DWORD gDropperId = 0;
HANDLE gPredecessor = nullptr; // such a thread of a library that has left; has a reference to drop

std::atomic<int> gRunning{0}; // threads that the library has started

/// Set for the threads that the library has started.
struct Mark {
    Mark() = default;
    Mark(const Mark&) = delete;
    Mark& operator=(const Mark&) = delete;
    ~Mark() { TlsFree(slot); }
    const DWORD slot = TlsAlloc();
};
Mark gMark;

HMODULE ReferenceOwnModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(gModule),
                       &module);
    return module;
}

bool HasEnded(HANDLE thread) {
    return WaitForSingleObject(thread, 0) == WAIT_OBJECT_0;
}

/// Takes back the reference for the predecessor's thread, if that came when there was none to drop.
void SettleWithPredecessor() {
    if (gPredecessor == nullptr) {
        return;
    }
    DWORD dropped = TRUE;
    WaitForSingleObject(gPredecessor, INFINITE);
    GetExitCodeThread(gPredecessor, &dropped);
    CloseHandle(gPredecessor);
    if (dropped == FALSE) {
        FreeLibrary(gModule);
    }
}

DWORD WINAPI Unload(void* ownReference) {
    // UnInstall may be called from inside an observer method: the frames below it are ours.
    for (int quiet = 0; quiet < 2;) {
        Sleep(kLeaveMilliseconds);
        quiet = VESKModule::InUse() || gRunning != 0 ? 0 : quiet + 1;
    }
    SettleWithPredecessor();
    gLastOut = GetCurrentThreadId();
    FreeLibraryAndExitThread(static_cast<HMODULE>(ownReference), 0);
}

} // namespace

void OnLoaded(HMODULE module) {
    gModule = module;
    wchar_t text[64] = {};
    const DWORD length = GetEnvironmentVariableW(kLegacy, text, 64);
    unsigned long process = 0;
    unsigned long long thread = 0;
    if (length == 0 || length >= 64 || std::swscanf(text, L"%lu %llu", &process, &thread) != 2 ||
        process != GetCurrentProcessId()) {
        return;
    }
    SetEnvironmentVariableW(kLegacy, nullptr);
    gPredecessor = reinterpret_cast<HANDLE>(static_cast<uintptr_t>(thread));
    // A library that comes back gets the same address.
    if (HasEnded(gPredecessor) || ReferenceOwnModule() == nullptr) {
        CloseHandle(gPredecessor);
        gPredecessor = nullptr;
    }
}

void OnThreadEnd() {
    if (TlsGetValue(gMark.slot) != nullptr) {
        --gRunning;
    }
    if (gLastOut == GetCurrentThreadId()) {
        gLastOut = 0;
        void* const freeLibrary = reinterpret_cast<void*>(&FreeLibrary);
        gDropper = CreateThread(nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(freeLibrary),
                                gModule, 0, &gDropperId);
    }
}

void OnLeave() {
    if (gDropper == nullptr) {
        return;
    }
    if (gDropperId == GetCurrentThreadId() || HasEnded(gDropper)) {
        CloseHandle(gDropper);
        return;
    }
    // The game was faster by a moment. If it loads the library again before that thread runs, the
    // reference that the thread drops must not be the game's new one.
    wchar_t text[64] = {};
    std::swprintf(text, 64, L"%lu %llu", GetCurrentProcessId(),
                  static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(gDropper)));
    SetEnvironmentVariableW(kLegacy, text);
}

void ThreadStarts() {
    ++gRunning;
}

void ThreadHasNotStarted() {
    --gRunning;
}

void MarkThread() {
    TlsSetValue(gMark.slot, &gMark);
}

void Start() {
    if (gModule == nullptr || gStarted.exchange(true)) {
        return;
    }
    HMODULE own = ReferenceOwnModule();
    HANDLE thread = own == nullptr ? nullptr : CreateThread(nullptr, 0, &Unload, own, 0, nullptr);
    if (thread != nullptr) {
        CloseHandle(thread);
    } else if (own != nullptr) {
        FreeLibrary(own); // the library stays, on the game's reference
    }
}

bool Started() {
    return gStarted;
}

} // namespace unload
} // namespace VESK
} // namespace Braxel
