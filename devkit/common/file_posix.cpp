#include "file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

} // namespace vesk::devkit
