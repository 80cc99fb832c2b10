#include "platformimpl/foundation/os/dynamiclibrary.h"

#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Braxel {
namespace VESK {
namespace os {

namespace {

/// Whether the file holds what its headers promise. The loader does not ask: it would wait for ever
/// for what is not a plain file, and one that was cut would end the process with a signal.
bool IsWholeLibrary(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) {
        return false;
    }
    struct stat status = {};
    ElfW(Ehdr) header = {};
    bool good = fstat(file, &status) == 0 && S_ISREG(status.st_mode) &&
                pread(file, &header, sizeof header, 0) == ssize_t{sizeof header} &&
                std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
                header.e_phentsize == sizeof(ElfW(Phdr));
    const auto size = static_cast<ElfW(Off)>(status.st_size);
    for (size_t i = 0; good && i < header.e_phnum; ++i) {
        ElfW(Phdr) part = {};
        const auto at = static_cast<off_t>(header.e_phoff + i * sizeof part);
        good = pread(file, &part, sizeof part, at) == ssize_t{sizeof part} &&
               (part.p_type != PT_LOAD ||
                (part.p_filesz <= size && part.p_offset <= size - part.p_filesz));
    }
    close(file);
    return good;
}

} // namespace

bool DynamicLibrary::Open(const std::string& fullPath) {
    // A bare name would make the loader search its path.
    if (fullPath.find('/') == std::string::npos || !IsWholeLibrary(fullPath)) {
        return false;
    }
    void* handle = dlopen(fullPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        return false;
    }
    mHandle = handle;
    mPath = fullPath;
    return true;
}

DynamicLibrary::AnyFunction DynamicLibrary::FindSymbol(const char* name) const {
    return mHandle == nullptr ? nullptr : reinterpret_cast<AnyFunction>(dlsym(mHandle, name));
}

bool DynamicLibrary::Close() {
    if (mHandle != nullptr) {
        dlclose(mHandle);
        mHandle = nullptr;
    }
    // An empty path would be the program itself.
    void* left = mPath.empty() ? nullptr : dlopen(mPath.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (left != nullptr) {
        dlclose(left);
    }
    return left == nullptr;
}

} // namespace os
} // namespace VESK
} // namespace Braxel
