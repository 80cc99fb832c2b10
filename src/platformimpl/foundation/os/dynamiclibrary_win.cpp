#include "platformimpl/foundation/os/dynamiclibrary.h"

#include <windows.h>

#include "platformimpl/foundation/os/text.h"

namespace Braxel {
namespace VESK {
namespace os {

bool DynamicLibrary::Open(const std::string& fullPath) {
    const std::wstring widePath = LocaleToWide(fullPath);
    if (widePath.empty()) {
        return false;
    }
    HMODULE handle = LoadLibraryW(widePath.c_str());
    if (handle == nullptr) {
        return false;
    }
    mHandle = handle;
    mPath = fullPath;
    return true;
}

DynamicLibrary::AnyFunction DynamicLibrary::FindSymbol(const char* name) const {
    if (mHandle == nullptr) {
        return nullptr;
    }
    return reinterpret_cast<AnyFunction>(GetProcAddress(static_cast<HMODULE>(mHandle), name));
}

bool DynamicLibrary::Close() {
    if (mHandle != nullptr) {
        FreeLibrary(static_cast<HMODULE>(mHandle));
        mHandle = nullptr;
    }
    return mPath.empty() || GetModuleHandleW(LocaleToWide(mPath).c_str()) == nullptr;
}

} // namespace os
} // namespace VESK
} // namespace Braxel
