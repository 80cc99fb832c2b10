#include "platformimpl/foundation/os/dynamiclibrary.h"

#include <dlfcn.h>

namespace Braxel {
namespace VESK {
namespace os {

bool DynamicLibrary::Open(const std::string& fullPath) {
    // A bare name would make the loader search its path.
    if (fullPath.find('/') == std::string::npos) {
        return false;
    }
    void* handle = dlopen(fullPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        return false;
    }
    mHandle = handle;
    return true;
}

DynamicLibrary::AnyFunction DynamicLibrary::FindSymbol(const char* name) const {
    return mHandle == nullptr ? nullptr : reinterpret_cast<AnyFunction>(dlsym(mHandle, name));
}

void DynamicLibrary::Close() {
    if (mHandle != nullptr) {
        dlclose(mHandle);
        mHandle = nullptr;
    }
}

} // namespace os
} // namespace VESK
} // namespace Braxel
