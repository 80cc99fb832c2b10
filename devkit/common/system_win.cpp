#include "system.h"

#include <windows.h>

namespace fs = std::filesystem;

namespace vesk::devkit {

namespace {

HANDLE open(const std::filesystem::path& file, DWORD access, DWORD creation) {
    return CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                       nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
}

HMODULE holderOf(const void* address, DWORD flags) {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags,
                       static_cast<LPCWSTR>(address), &module);
    return module;
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

fs::path moduleOf(const void* address) {
    HMODULE const module = holderOf(address, GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT);
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = 0;
    while (module != nullptr) {
        const DWORD size = static_cast<DWORD>(path.size());
        length = GetModuleFileNameW(module, path.data(), size);
        if (length < size) {
            break;
        }
        path.resize(2 * path.size());
    }
    path.resize(length);
    return path;
}

void stayLoaded() {
    holderOf(reinterpret_cast<const void*>(&stayLoaded), GET_MODULE_HANDLE_EX_FLAG_PIN);
}

} // namespace vesk::devkit
