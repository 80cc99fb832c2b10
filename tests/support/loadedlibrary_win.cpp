#include "loadedlibrary.h"

#include <stdexcept>
#include <string>
#include <windows.h>

namespace vesk::test {

const char* const kSdkLibrary = "VESKCore.dll";
const bool kSdkUnloadsItself = true;

LoadedLibrary::LoadedLibrary(const std::filesystem::path& file)
    : mFile(std::filesystem::path(file).make_preferred()), mHandle(LoadLibraryW(mFile.c_str())) {
    if (mHandle == nullptr) {
        throw std::runtime_error("cannot load " + file.string());
    }
}

bool LoadedLibrary::isLoaded() const {
    return GetModuleHandleW(mFile.filename().c_str()) != nullptr;
}

void LoadedLibrary::close() const {
    FreeLibrary(static_cast<HMODULE>(mHandle));
}

LoadedLibrary::Address LoadedLibrary::address(const char* name) const {
    const auto found = GetProcAddress(static_cast<HMODULE>(mHandle), name);
    if (found == nullptr) {
        throw std::runtime_error(std::string("not exported: ") + name);
    }
    return reinterpret_cast<Address>(found);
}

} // namespace vesk::test
