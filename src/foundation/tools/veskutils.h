#ifndef VESK_FOUNDATION_TOOLS_VESKUTILS_H
#define VESK_FOUNDATION_TOOLS_VESKUTILS_H

#include <cstdint>
#include <string>

namespace Braxel {
namespace VESK {

/// Return messages.
class VESKUtils {
public:
    /// The readable text of a return code, from the message file beside the library; "" when there
    /// is none. The file is read on first use, and again on each call as long as it gave nothing.
    static std::string GetRetMsg(int32_t retCode);
};

} // namespace VESK
} // namespace Braxel

#endif
