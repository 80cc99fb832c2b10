#include "platformimpl/foundation/os/file.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

namespace Braxel {
namespace VESK {
namespace os {

int32_t FileSize(const std::string& path) {
    struct _stat64i32 status = {};
    if (_stat64i32(path.c_str(), &status) != 0) {
        return -1;
    }
    return static_cast<int32_t>(status.st_size);
}

std::FILE* OpenPlainFile(const std::string& path, const char* mode) {
    return std::fopen(path.c_str(), mode); // which fails for folders
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

} // namespace os
} // namespace VESK
} // namespace Braxel
