#include "loadedlibrary.h"

#include <dlfcn.h>
#include <stdexcept>

namespace vesk::test {

const char* const kSdkLibrary = "libVESKCore.so";
const bool kSdkUnloadsItself = false;

LoadedLibrary::LoadedLibrary(const std::filesystem::path& file)
    : mFile(file), mHandle(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (mHandle == nullptr) {
        throw std::runtime_error(dlerror());
    }
}

bool LoadedLibrary::isLoaded() const {
    return dlopen(mFile.c_str(), RTLD_NOW | RTLD_NOLOAD) != nullptr;
}

void LoadedLibrary::close() const {
    dlclose(mHandle);
}

LoadedLibrary::Address LoadedLibrary::address(const char* name) const {
    void* const found = dlsym(mHandle, name);
    if (found == nullptr) {
        throw std::runtime_error(dlerror());
    }
    return reinterpret_cast<Address>(found);
}

} // namespace vesk::test
