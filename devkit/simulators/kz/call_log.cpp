#include "call_log.h"

#include <windows.h>
#include <mutex>

#include "json_line.h"
#include "lock.h"
#include "server.h"

namespace vesk::kzsim {

void logLine(JsonLine& line) {
    static Lock theFile;
    const std::string text = line.end() + '\n';
    const std::lock_guard<Lock> guard(theFile);
    HANDLE file = CreateFileW(Server::besideMe(L"kz_sim_calls.txt").c_str(), FILE_APPEND_DATA,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                              OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        DWORD written = 0;
        WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
        CloseHandle(file);
    }
}

void logCall(const char* name) {
    logLine(JsonLine().add("call", name));
}

void logEvent(long type) {
    logLine(JsonLine().add("event", type));
}

void logObjects() {
    logLine(JsonLine().add("objects", Server::liveObjects()));
}

void logUnload() {
    logLine(JsonLine().add("objects", Server::liveObjects()).add("unloaded", true));
}

void logProblem(const std::string& what) {
    logLine(JsonLine().add("problem", what));
}

} // namespace vesk::kzsim
