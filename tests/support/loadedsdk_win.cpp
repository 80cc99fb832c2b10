#include "loadedsdk.h"

#include <windows.h>
#include <stdexcept>
#include <string>

namespace vesk::test {

const char* const kSdkLibrary = "VESKCore.dll";
const bool kSdkUnloadsItself = true;

LoadedSdk::LoadedSdk(const std::filesystem::path& folder)
    : mFile((folder / kSdkLibrary).make_preferred()), mHandle(LoadLibraryW(mFile.c_str())) {
    if (mHandle == nullptr) {
        throw std::runtime_error("cannot load " + mFile.string());
    }
}

bool LoadedSdk::isLoaded() const {
    return GetModuleHandleW(mFile.filename().c_str()) != nullptr;
}

void LoadedSdk::close() const {
    FreeLibrary(static_cast<HMODULE>(mHandle));
}

LoadedSdk::Address LoadedSdk::address(const char* name) const {
    const auto found = GetProcAddress(static_cast<HMODULE>(mHandle), name);
    if (found == nullptr) {
        throw std::runtime_error(std::string("not exported: ") + name);
    }
    return reinterpret_cast<Address>(found);
}

} // namespace vesk::test
