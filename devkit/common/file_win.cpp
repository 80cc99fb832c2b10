#include "file.h"

#include <windows.h>

namespace vesk::devkit {

namespace {

HANDLE open(const std::filesystem::path& file, DWORD access, DWORD creation) {
    return CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                       nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
}

} // namespace

std::string readFile(const std::filesystem::path& file) {
    std::string bytes;
    HANDLE const handle = open(file, GENERIC_READ, OPEN_EXISTING);
    if (handle != INVALID_HANDLE_VALUE) {
        char buffer[4096];
        DWORD size = 0;
        while (GetFileType(handle) == FILE_TYPE_DISK &&
               ReadFile(handle, buffer, sizeof buffer, &size, nullptr) && size != 0) {
            bytes.append(buffer, size);
        }
        CloseHandle(handle);
    }
    return bytes;
}

void appendToFile(const std::filesystem::path& file, std::string_view bytes) {
    HANDLE const handle = open(file, FILE_APPEND_DATA, OPEN_ALWAYS);
    if (handle != INVALID_HANDLE_VALUE) {
        DWORD written = 0;
        WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
        CloseHandle(handle);
    }
}

} // namespace vesk::devkit
