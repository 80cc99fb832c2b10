#include "own_path.h"

#include <windows.h>

namespace vesk::steamsim {

std::filesystem::path ownFolder() {
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&ownFolder), &self);
    wchar_t file[MAX_PATH] = {};
    GetModuleFileNameW(self, file, MAX_PATH);
    return std::filesystem::path(file).parent_path();
}

void stayLoaded() {
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<LPCWSTR>(&stayLoaded), &self);
}

} // namespace vesk::steamsim
