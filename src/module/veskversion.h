#ifndef VESK_MODULE_VESKVERSION_H
#define VESK_MODULE_VESKVERSION_H

namespace Braxel {
namespace VESK {

/// The SDK's version as the backend sees it. The build reads its own version number from this line.
constexpr const char kSdkVersion[] = "5.0.000.0005";

/// The platform's name in the device information.
constexpr const char kPlatformName[] = "WINDOWS";

} // namespace VESK
} // namespace Braxel

#endif
