#include "loadedsdk.h"

#include <windows.h>

#include "common/ownmodule.h"

namespace fs = std::filesystem;

namespace vesk::doctor {

const char* const kSdkLibrary = "VESKCore.dll";
const BinaryFile::Kind kSystem = BinaryFile::Kind::Windows64;

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
