#ifndef VESK_PLATFORMIMPL_LOGIN_VESKFERNO_VESKFRCALLBACKS_H
#define VESK_PLATFORMIMPL_LOGIN_VESKFERNO_VESKFRCALLBACKS_H

#include "platformimpl/login/veskferno/veskfrcomponent.h"

namespace Braxel {
namespace VESK {

/// What frlogin.dll calls: decodes its answers for the wrapper's notify observer. Texts may be
/// null and need not be NUL-terminated.
class VESKFRCallbacks {
public:
    /// A filled table; the caller frees it with free(), once the library is gone. Null when there
    /// is no memory.
    static FrCallbackTable* MakeTable();

private:
    static void qrcode_resp(uint32_t errType, int32_t errCode, const char* url, uint32_t urlLength,
                            uint64_t timeout, uint64_t expiryTick);
    static void login_resp(uint32_t errType, int32_t errCode, const char* ctt, uint32_t cttLength,
                           const char* openid, uint32_t openidLength, const char* sessionKey,
                           uint32_t sessionKeyLength, uint32_t cttTimeout, uint64_t expiryTick);
    static void client_tmp_token_resp(uint32_t errType, int32_t errCode, const char* ctt,
                                      uint32_t cttLength, const char* openid, uint32_t openidLength,
                                      const char* sessionKey, uint32_t sessionKeyLength,
                                      uint32_t cttTimeout, uint64_t expiryTick);
    static void on_kickout(int32_t errCode);
    static void on_user_state_exception();

    /// @param method the callback's own name, for the log
    template <typename Body>
    static void Guarded(const char* method, const Body& body);
};

} // namespace VESK
} // namespace Braxel

#endif
