#include "platformimpl/foundation/os/guid.h"

#include <sys/random.h>

namespace Braxel {
namespace VESK {
namespace os {

bool CreateGuid(Guid& guid) {
    Guid made = {};
    if (getrandom(&made, sizeof made, 0) != static_cast<ssize_t>(sizeof made)) {
        return false;
    }
    // Mark it as a random (version 4) id, as the Windows call does.
    made.data3 = static_cast<uint16_t>((made.data3 & 0x0FFF) | 0x4000);
    made.data4[0] = static_cast<uint8_t>((made.data4[0] & 0x3F) | 0x80);
    guid = made;
    return true;
}

} // namespace os
} // namespace VESK
} // namespace Braxel
