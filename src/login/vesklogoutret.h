#ifndef VESK_LOGIN_VESKLOGOUTRET_H
#define VESK_LOGIN_VESKLOGOUTRET_H

#include <cstdint>
#include <string>

#include "vesk/veskret.h"

namespace Braxel {
namespace VESK {

class VESKJsonReader;

/// The backend's answer to a logout.
struct VESKLogoutRet : VESKBaseRet {
    static constexpr const char* kRecordName = "VESKLogoutRet";

    VESKLogoutRet() { thirdCode = 0; }

    /// Deliberate: whatever the body says counts as success.
    void FromJson(const VESKJsonReader& /*reader*/) {}
};

} // namespace VESK
} // namespace Braxel

#endif
