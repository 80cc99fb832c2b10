#include "loadedsdk.h"

#include <dlfcn.h>

#include "common/ownmodule.h"

namespace fs = std::filesystem;

namespace vesk::doctor {

const char* const kSdkLibrary = "libVESKCore.so";
const BinaryFile::Kind kSystem = BinaryFile::Kind::Linux64;

namespace {

LoadedSdk describe(void* library, const fs::path& path) {
    LoadedSdk sdk;
    sdk.path = path;
    void* const version = dlsym(library, "vesk_version");
    if (version != nullptr) {
        sdk.version = reinterpret_cast<const char* (*)()>(version)();
        sdk.path = devkit::moduleOf(version);
    }
    return sdk;
}

} // namespace

LoadedSdk loadedSdk() {
    void* const library = dlopen(kSdkLibrary, RTLD_LAZY | RTLD_LOCAL | RTLD_NOLOAD);
    return library == nullptr ? LoadedSdk() : describe(library, kSdkLibrary);
}

LoadedSdk loadSdk(const fs::path& file) {
    void* const library = dlopen(fs::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        LoadedSdk failed;
        failed.error = dlerror();
        return failed;
    }
    return describe(library, file);
}

} // namespace vesk::doctor
