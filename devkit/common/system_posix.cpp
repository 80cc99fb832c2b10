#include "system.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace vesk::devkit {

std::string readFile(const std::filesystem::path& file) {
    std::string bytes;
    struct stat status = {};
    // The kind is asked for first, and a FIFO that comes in between is not waited for.
    const bool regular = ::stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    const int handle = regular ? ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC) : -1;
    if (handle >= 0) {
        char buffer[4096];
        for (ssize_t size = 0; (size = ::read(handle, buffer, sizeof buffer)) > 0;) {
            bytes.append(buffer, static_cast<size_t>(size));
        }
        ::close(handle);
    }
    return bytes;
}

void appendToFile(const std::filesystem::path& file, std::string_view bytes) {
    const int handle = ::open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (handle >= 0) {
        while (!bytes.empty()) {
            const ssize_t written = ::write(handle, bytes.data(), bytes.size());
            bytes.remove_prefix(written > 0 ? static_cast<size_t>(written) : bytes.size());
        }
        ::close(handle);
    }
}

fs::path moduleOf(const void* address) {
    Dl_info info = {};
    void* map = nullptr;
    if (dladdr1(address, &info, &map, RTLD_DL_LINKMAP) == 0) {
        return {};
    }
    // The program itself has no name there, and the other one is what it was called by.
    const char* const name = static_cast<const link_map*>(map)->l_name;
    std::error_code ignored;
    return *name == '\0' ? fs::read_symlink("/proc/self/exe", ignored) : fs::path(name);
}

void stayLoaded() {
    dlopen(moduleOf(reinterpret_cast<const void*>(&stayLoaded)).c_str(), RTLD_NOW | RTLD_NODELETE);
}

} // namespace vesk::devkit
