#ifndef VESK_PLATFORMIMPL_FOUNDATION_OS_GUID_H
#define VESK_PLATFORMIMPL_FOUNDATION_OS_GUID_H

#include <cstdint>

namespace Braxel {
namespace VESK {
namespace os {

/// A globally unique id in the parts in which it is printed.
struct Guid {
    uint32_t data1;
    uint16_t data2;
    uint16_t data3;
    uint8_t data4[8];
};

/// Makes a fresh random id.
/// @return false when the system has none to give; @p guid is then not to be used.
bool CreateGuid(Guid& guid);

} // namespace os
} // namespace VESK
} // namespace Braxel

#endif
