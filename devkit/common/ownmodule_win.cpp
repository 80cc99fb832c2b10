#include "ownmodule.h"

#include <windows.h>

namespace fs = std::filesystem;

namespace vesk::devkit {

namespace {

HMODULE holderOf(const void* address, DWORD flags) {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags,
                       static_cast<LPCWSTR>(address), &module);
    return module;
}

} // namespace

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

fs::path ownFolder() {
    return moduleOf(reinterpret_cast<const void*>(&ownFolder)).parent_path();
}

void stayLoaded() {
    holderOf(reinterpret_cast<const void*>(&stayLoaded), GET_MODULE_HANDLE_EX_FLAG_PIN);
}

} // namespace vesk::devkit
