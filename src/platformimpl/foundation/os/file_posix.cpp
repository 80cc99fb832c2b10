#include "platformimpl/foundation/os/file.h"

#include <limits>
#include <sys/stat.h>

namespace Braxel {
namespace VESK {
namespace os {

int32_t FileSize(const std::string& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0 || status.st_size > std::numeric_limits<int32_t>::max()) {
        return -1;
    }
    return static_cast<int32_t>(status.st_size);
}

} // namespace os
} // namespace VESK
} // namespace Braxel
