#include "module.h"

#include <windows.h>
#include <algorithm>
#include <iterator>

#include "common/ownmodule.h"

namespace fs = std::filesystem;

namespace vesk::doctor {

const char* const kSdkLibrary = "VESKCore.dll";
const ModuleKind kSystem = ModuleKind::Windows64;

namespace {

LoadedSdk describe(HMODULE library) {
    LoadedSdk sdk;
    sdk.path = devkit::moduleOf(library); // a module's handle is its address
    const auto version = reinterpret_cast<const char* (*)()>(
        reinterpret_cast<void (*)()>(GetProcAddress(library, "vesk_version")));
    if (version != nullptr) {
        sdk.version = version();
    }
    return sdk;
}

} // namespace

std::optional<std::vector<std::string>> missingExports(const fs::path& file,
                                                       const std::vector<std::string>& names) {
    // Only mapped: neither it nor what it needs is started.
    HMODULE const library =
        LoadLibraryExW(fs::absolute(file).c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
    if (library == nullptr) {
        return std::nullopt;
    }
    std::vector<std::string> missing;
    std::copy_if(
        names.begin(), names.end(), std::back_inserter(missing),
        [&](const std::string& name) { return GetProcAddress(library, name.c_str()) == nullptr; });
    FreeLibrary(library);
    return missing;
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
        return {{}, {}, "Windows says error " + std::to_string(error)};
    }
    return describe(library);
}

} // namespace vesk::doctor
