#ifndef VESK_PLATFORMIMPL_FOUNDATION_OS_FILE_H
#define VESK_PLATFORMIMPL_FOUNDATION_OS_FILE_H

#include <cstdint>
#include <string>

namespace Braxel {
namespace VESK {
namespace os {

/// Size in bytes of the file at @p path; -1 when it cannot be told or does not fit 32 bits.
int32_t FileSize(const std::string& path);

} // namespace os
} // namespace VESK
} // namespace Braxel

#endif
