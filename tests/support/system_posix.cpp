#include "support/system.h"

#include <dlfcn.h>
#include <fstream>
#include <stdexcept>
#include <string>

namespace fs = std::filesystem;

namespace vesk::test {

const size_t kSystemThreads = 0;
const char* const kSdkLibrary = "libVESKCore.so";
const bool kSdkUnloadsItself = false;

namespace {

size_t entries(const char* folder) {
    return static_cast<size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

template <typename Result>
Result found(Result result) {
    if (result == nullptr) {
        throw std::runtime_error(dlerror());
    }
    return result;
}

} // namespace

size_t countThreads() {
    return entries("/proc/self/task");
}

ProcessCounts countProcess() {
    ProcessCounts counts;
    counts.descriptors = entries("/proc/self/fd");
    counts.threads = countThreads();
    std::ifstream status("/proc/self/status");
    for (std::string key; status >> key;) {
        size_t kilobytes = 0;
        if (key == "VmRSS:" && status >> kilobytes) {
            counts.residentBytes = kilobytes * 1024;
        } else if (key == "VmHWM:" && status >> kilobytes) {
            counts.peakResidentBytes = kilobytes * 1024;
        }
    }
    return counts;
}

void* openLibrary(const fs::path& file) {
    return found(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL));
}

void closeLibrary(void* library) {
    dlclose(library);
}

bool isLibraryLoaded(const fs::path& file) {
    return dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD) != nullptr;
}

void (*findInLibrary(void* library, const char* name))() {
    return reinterpret_cast<void (*)()>(found(dlsym(library, name)));
}

} // namespace vesk::test
