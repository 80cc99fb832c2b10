#ifndef VESK_COMMON_VESKIDS_H
#define VESK_COMMON_VESKIDS_H

#include <cstdint>

namespace Braxel {
namespace VESK {

/// Under which id a result is committed to the inner observer holder of its record type.
enum ObserverID : int32_t {
    kObserverIDLoginRet = 101,      ///< InnerLoginRet, to the facade
    kObserverIDBaseRet = 102,       ///< InnerBaseRet, to the facade
    kObserverIDPluginLogout = 108,  ///< InnerBaseRet, a channel's logout answer
    kObserverIDPluginLogin = 109,   ///< InnerLoginPluginRet, a channel's login answer
    kObserverIDQrCodeRet = 110,     ///< InnerQrCodeRet, to the facade
    kObserverIDPluginRefresh = 111, ///< InnerLoginPluginRet, a channel's token-refresh answer
};

} // namespace VESK
} // namespace Braxel

#endif
