#include "platformimpl/foundation/os/file.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platformimpl/foundation/os/clock.h"

namespace Braxel {
namespace VESK {
namespace os {

int64_t FileSize(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? status.st_size : -1;
}

namespace {

std::atomic<unsigned> gAsides{0};

// What the files hold is secret: the log and the login cache have tokens in them.
constexpr mode_t kUserOnly = 0600;

// fstat() would do. But it also reads the time of the last change, and a file system that keeps
// that exactly then has to store a new one with the next write, which made half a log line's cost.
bool IsPlainFile(int file) {
    loff_t size = 0; // answered for plain files and folders alone, and folders do not open
    if (ioctl(file, FIOQSIZE, &size) == 0) {
        return true;
    }
    struct stat status = {};
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

FileStamp StampOf(const std::string& path) {
    constexpr int64_t kSecond = 1000000000;
    struct stat status = {};
    FileStamp stamp;
    if (stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
        stamp.size = status.st_size;
        stamp.id = status.st_ino;
        stamp.modified = status.st_mtim.tv_sec * kSecond + status.st_mtim.tv_nsec;
        stamp.changed = status.st_ctim.tv_sec * kSecond + status.st_ctim.tv_nsec;
        const int64_t last = std::max(status.st_mtim.tv_sec, status.st_ctim.tv_sec);
        stamp.isSettled = UnixSeconds() - last > kFileTimeSeconds;
    }
    return stamp;
}

std::FILE* OpenPlainFile(const std::string& path, const char* mode) {
    const int access = *mode == 'w' ? O_WRONLY | O_CREAT | O_TRUNC : O_RDONLY;
    const int file = open(path.c_str(), access | O_NONBLOCK | O_CLOEXEC, kUserOnly);
    if (file < 0) {
        return nullptr;
    }
    struct stat status = {};
    std::FILE* stream = nullptr;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
        stream = fdopen(file, mode);
    }
    if (stream == nullptr) {
        close(file);
    }
    return stream;
}

std::string AsideName(const std::string& path) {
    return path + "." + std::to_string(getpid()) + "-" + std::to_string(++gAsides) + ".tmp";
}

bool MoveOver(const std::string& aside, const std::string& path) {
    struct stat status = {};
    const bool isFree = stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode);
    return isFree && std::rename(aside.c_str(), path.c_str()) == 0;
}

bool AppendLine(const std::string& path, const std::string& line) {
    const int file =
        open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NONBLOCK | O_CLOEXEC, kUserOnly);
    if (file < 0) {
        return false;
    }
    bool good = IsPlainFile(file);
    for (size_t done = 0; good && done < line.size();) {
        const ssize_t written = write(file, line.data() + done, line.size() - done);
        good = written > 0 || (written < 0 && errno == EINTR);
        done += written > 0 ? static_cast<size_t>(written) : 0;
    }
    return close(file) == 0 && good;
}

bool IsOtherThanPlainFile(const std::string& path, int64_t maxBytes) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 &&
           (!S_ISREG(status.st_mode) || status.st_size > maxBytes);
}

} // namespace os
} // namespace VESK
} // namespace Braxel
