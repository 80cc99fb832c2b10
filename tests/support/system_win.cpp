#include "support/system.h"

#include <windows.h>
#include <psapi.h>
#include <stdexcept>
#include <string>
#include <tlhelp32.h>

namespace fs = std::filesystem;

namespace vesk::test {

// Sockets and TLS use the system's thread pool.
const size_t kSystemThreads = 2;
const char* const kSdkLibrary = "VESKCore.dll";
const bool kSdkUnloadsItself = true;

size_t countThreads() {
    size_t count = 0;
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread = {};
    thread.dwSize = sizeof thread;
    for (BOOL more = Thread32First(snapshot, &thread); more != 0;
         more = Thread32Next(snapshot, &thread)) {
        count += thread.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    CloseHandle(snapshot);
    return count;
}

ProcessCounts countProcess() {
    ProcessCounts counts;
    // One by one: Wine's GetProcessHandleCount always answers 0. The lowest free one is taken, so
    // after a long gap there are none.
    for (UINT_PTR value = 4, missing = 0; missing < 256; value += 4) {
        DWORD flags = 0;
        const bool open = GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != 0;
        counts.descriptors += open ? 1 : 0;
        missing = open ? 0 : missing + 1;
    }
    counts.threads = countThreads();
    PROCESS_MEMORY_COUNTERS memory = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    counts.residentBytes = memory.WorkingSetSize;
    counts.peakResidentBytes = memory.PeakWorkingSetSize;
    return counts;
}

void* openLibrary(const fs::path& file) {
    HMODULE const library = LoadLibraryW(fs::path(file).make_preferred().c_str());
    if (library == nullptr) {
        throw std::runtime_error("cannot load " + file.string());
    }
    return library;
}

void closeLibrary(void* library) {
    FreeLibrary(static_cast<HMODULE>(library));
}

bool isLibraryLoaded(const fs::path& file) {
    return GetModuleHandleW(file.filename().c_str()) != nullptr;
}

void (*findInLibrary(void* library, const char* name))() {
    const auto found = GetProcAddress(static_cast<HMODULE>(library), name);
    if (found == nullptr) {
        throw std::runtime_error(std::string("not exported: ") + name);
    }
    return reinterpret_cast<void (*)()>(found);
}

} // namespace vesk::test
