#include "loadedsdk.h"

#include <dlfcn.h>

namespace fs = std::filesystem;

namespace vesk::doctor {

const char* const kSdkLibrary = "libVESKCore.so";
const BinaryFile::Kind kSystem = BinaryFile::Kind::Linux64;

namespace {

LoadedSdk describe(void* library, const fs::path& path) {
    LoadedSdk sdk;
    sdk.path = path;
    Dl_info where = {};
    void* const version = dlsym(library, "vesk_version");
    if (version != nullptr) {
        sdk.version = reinterpret_cast<const char* (*)()>(version)();
        if (dladdr(version, &where) != 0) {
            std::error_code ignored;
            sdk.path = fs::weakly_canonical(where.dli_fname, ignored);
        }
    }
    return sdk;
}

} // namespace

fs::path programFolder() {
    std::error_code ignored;
    return fs::read_symlink("/proc/self/exe", ignored).parent_path();
}

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
