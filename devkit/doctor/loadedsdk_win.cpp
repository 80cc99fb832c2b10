#include "loadedsdk.h"

#include <windows.h>

namespace fs = std::filesystem;

namespace vesk::doctor {

const char* const kSdkLibrary = "VESKCore.dll";
const BinaryFile::Kind kSystem = BinaryFile::Kind::Windows64;

namespace {

fs::path pathOf(HMODULE module) {
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    while (length == path.size()) {
        path.resize(2 * path.size());
        length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    }
    path.resize(length);
    return path;
}

LoadedSdk describe(HMODULE library) {
    LoadedSdk sdk;
    sdk.path = pathOf(library);
    const auto version = reinterpret_cast<const char* (*)()>(
        reinterpret_cast<void (*)()>(GetProcAddress(library, "vesk_version")));
    if (version != nullptr) {
        sdk.version = version();
    }
    return sdk;
}

} // namespace

fs::path programFolder() {
    return pathOf(nullptr).parent_path();
}

LoadedSdk loadedSdk() {
    HMODULE const library = GetModuleHandleA(kSdkLibrary);
    return library == nullptr ? LoadedSdk() : describe(library);
}

LoadedSdk loadSdk(const fs::path& file) {
    // A missing import must not bring up a window.
    const UINT before = SetErrorMode(SEM_FAILCRITICALERRORS);
    HMODULE const library = LoadLibraryW(fs::absolute(file).c_str());
    const DWORD error = GetLastError();
    SetErrorMode(before);
    if (library == nullptr) {
        LoadedSdk failed;
        failed.error = "Windows says error " + std::to_string(error);
        return failed;
    }
    return describe(library);
}

} // namespace vesk::doctor
