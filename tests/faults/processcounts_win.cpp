#include "faults/processcounts.h"

#include <windows.h>
#include <psapi.h>
#include <tlhelp32.h>

namespace vesk::test {

// Sockets and TLS use the system's thread pool.
const size_t kSystemThreads = 2;

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
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread = {};
    thread.dwSize = sizeof thread;
    for (BOOL more = Thread32First(snapshot, &thread); more != 0;
         more = Thread32Next(snapshot, &thread)) {
        counts.threads += thread.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    CloseHandle(snapshot);
    PROCESS_MEMORY_COUNTERS memory = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    counts.residentBytes = memory.WorkingSetSize;
    counts.peakResidentBytes = memory.PeakWorkingSetSize;
    return counts;
}

} // namespace vesk::test
