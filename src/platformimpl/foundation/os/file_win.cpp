#include "platformimpl/foundation/os/file.h"

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

} // namespace os
} // namespace VESK
} // namespace Braxel
