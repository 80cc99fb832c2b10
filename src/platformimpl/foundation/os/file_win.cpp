#include "platformimpl/foundation/os/file.h"

#include <windows.h>
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include "platformimpl/foundation/os/clock.h"

namespace Braxel {
namespace VESK {
namespace os {

namespace {

std::atomic<unsigned> gAsides{0};

constexpr int kTries = 50;
constexpr DWORD kTryMilliseconds = 5;

} // namespace

int64_t FileSize(const std::string& path) {
    struct _stat64 status = {};
    return _stat64(path.c_str(), &status) == 0 ? status.st_size : -1;
}

FileStamp StampOf(const std::string& path) {
    constexpr int64_t kSecond = 10000000;
    constexpr int64_t kUnixStart = 11644473600; // in seconds since 1601
    FileStamp stamp;
    const HANDLE file = CreateFileA(
        path.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr); // which fails for folders
    if (file == INVALID_HANDLE_VALUE) {
        return stamp;
    }
    BY_HANDLE_FILE_INFORMATION whole = {};
    FILE_BASIC_INFO times = {};
    if (GetFileType(file) == FILE_TYPE_DISK && GetFileInformationByHandle(file, &whole) != 0 &&
        GetFileInformationByHandleEx(file, FileBasicInfo, &times, sizeof times) != 0) {
        stamp.size = int64_t{whole.nFileSizeHigh} << 32 | whole.nFileSizeLow;
        stamp.id = uint64_t{whole.nFileIndexHigh} << 32 | whole.nFileIndexLow;
        stamp.modified = times.LastWriteTime.QuadPart;
        stamp.changed = times.ChangeTime.QuadPart;
        const int64_t last = std::max(stamp.modified, stamp.changed) / kSecond - kUnixStart;
        stamp.isSettled = UnixSeconds() - last > kFileTimeSeconds;
    }
    CloseHandle(file);
    return stamp;
}

std::FILE* OpenPlainFile(const std::string& path, const char* mode) {
    // Somebody who replaces the file has it for himself, for a moment.
    for (int tries = 0;; ++tries) {
        std::FILE* file = std::fopen(path.c_str(), mode); // which fails for folders
        if (file != nullptr || _doserrno != ERROR_SHARING_VIOLATION || tries == kTries) {
            return file;
        }
        Sleep(kTryMilliseconds);
    }
}

std::string AsideName(const std::string& path) {
    return path + "." + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++gAsides) +
           ".tmp";
}

bool MoveOver(const std::string& aside, const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return false;
    }
    // A file that somebody reads, another game of the same folder or a virus scanner, cannot be
    // replaced until it is closed.
    for (int tries = 0; tries < kTries; ++tries) {
        if (MoveFileExA(aside.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) != 0) {
            return true;
        }
        const DWORD error = GetLastError();
        if (error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION) {
            return false;
        }
        Sleep(kTryMilliseconds);
    }
    return false;
}

bool AppendLine(const std::string& path, const std::string& line) {
    const int file = _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_APPEND | _O_TEXT | _O_NOINHERIT,
                           _S_IREAD | _S_IWRITE);
    if (file < 0) {
        return false;
    }
    const int length = static_cast<int>(line.size());
    const int written = _write(file, line.data(), static_cast<unsigned>(length));
    return _close(file) == 0 && written == length;
}

bool IsOtherThanPlainFile(const std::string& path, int64_t maxBytes) {
    struct _stat64 status = {};
    return _stat64(path.c_str(), &status) == 0 &&
           ((status.st_mode & _S_IFMT) != _S_IFREG || status.st_size > maxBytes);
}

} // namespace os
} // namespace VESK
} // namespace Braxel
