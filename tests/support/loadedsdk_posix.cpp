#include "loadedsdk.h"

#include <dlfcn.h>
#include <stdexcept>

namespace vesk::test {

const char* const kSdkLibrary = "libVESKCore.so";
const bool kSdkUnloadsItself = false;

LoadedSdk::LoadedSdk(const std::filesystem::path& folder)
    : mFile(folder / kSdkLibrary), mHandle(dlopen(mFile.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (mHandle == nullptr) {
        throw std::runtime_error(dlerror());
    }
}

bool LoadedSdk::isLoaded() const {
    return dlopen(mFile.c_str(), RTLD_NOW | RTLD_NOLOAD) != nullptr;
}

void LoadedSdk::close() const {
    dlclose(mHandle);
}

LoadedSdk::Address LoadedSdk::address(const char* name) const {
    void* const found = dlsym(mHandle, name);
    if (found == nullptr) {
        throw std::runtime_error(dlerror());
    }
    return reinterpret_cast<Address>(found);
}

} // namespace vesk::test
