#ifndef VESK_PLATFORMIMPL_LOGIN_VESKFERNO_VESKFRCOMPONENT_H
#define VESK_PLATFORMIMPL_LOGIN_VESKFERNO_VESKFRCOMPONENT_H

#include <cstddef>
#include <cstdint>

namespace Braxel {
namespace VESK {

/// The functions of frlogin.dll, each exported under its C name. A length that comes back is taken
/// as 32 bits: components differ in the width, and the low half is right for both.
using FrQrCodeResp = void (*)(uint32_t errType, int32_t errCode, const char* url,
                              uint32_t urlLength, uint64_t timeout, uint64_t expiryTick);
using FrLoginResp = void (*)(uint32_t errType, int32_t errCode, const char* ctt, uint32_t cttLength,
                             const char* openid, uint32_t openidLength, const char* sessionKey,
                             uint32_t sessionKeyLength, uint32_t cttTimeout, uint64_t expiryTick);
using FrKickOut = void (*)(int32_t errCode);
using FrUserStateException = void (*)();

/// The table that frlogin_init takes: ten slots of one pointer, of which five are used.
struct FrCallbackTable {
    void* unused0;
    FrQrCodeResp qrcodeResp;
    FrLoginResp loginResp;
    void* unused3;
    FrLoginResp clientTmpTokenResp;
    void* unused5;
    void* unused6;
    FrKickOut onKickOut;
    void* unused8;
    FrUserStateException onUserStateException;
};
static_assert(sizeof(FrCallbackTable) == 10 * sizeof(void*), "ten slots of one pointer");

/// @param callbacks a FrCallbackTable
using FrInit = int (*)(void* callbacks, const char* logDirectory);
using FrUninit = int (*)();
using FrRequestQrCode = int (*)(const char* appID, size_t appIDLength, const char* preCode,
                                size_t preCodeLength, const char* scope, size_t scopeLength);
using FrRequest = int (*)();

} // namespace VESK
} // namespace Braxel

#endif
