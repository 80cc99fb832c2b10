/// @file
/// The records in which every result arrives.
#ifndef VESK_VESKRET_H
#define VESK_VESKRET_H

#include <cstdint>
#include <string>

namespace Braxel {
namespace VESK {

/// Which operation a result belongs to; the values of `methodNameID`.
enum VESKMethodNameID : int32_t {
    kMethodNameAutoLogin = 111,    ///< VESKLogin::AutoLogin
    kMethodNameLogin = 112,        ///< VESKLogin::Login, and every stage of a login
    kMethodNameBind = 113,         ///< a bind result
    kMethodNameGetLoginRet = 114,  ///< VESKLogin::GetLoginRet
    kMethodNameLogout = 117,       ///< VESKLogin::Logout
    kMethodNameQrCode = 122,       ///< a QR code to show
    kMethodNameRefreshToken = 123, ///< a refreshed channel token; never reaches the game
};

/// What every result carries. Texts are UTF-8.
struct VESKBaseRet {
    int32_t methodNameID = 0; ///< a VESKMethodNameID
    int32_t retCode = -1;     ///< a VESKError code; 0 is success, -1 not set
    std::string retMsg;       ///< a readable text for retCode; may be empty
    int32_t thirdCode = -1;   ///< a code from outside, see VESKError; -1 when there is none
    std::string thirdMsg;     ///< the outside party's own text; may be empty
    std::string extraJson;    ///< JSON text; empty unless something was added
};

/// The result of a login.
struct VESKLoginRet : VESKBaseRet {
    std::string openid;        ///< the account's identity, as the backend gave it
    std::string token;         ///< the account's token; a secret, do not log or show it
    int64_t tokenExpire = 0;   ///< absolute expiry in Unix seconds; 0 = unknown
    int32_t firstLogin = 0;    ///< 1 when this account logged in for the first time
    std::string regChannelDis; ///< the distribution channel of the registration
    std::string userName;      ///< the player's display name
    int32_t gender = 0;        ///< as the backend states it; 0 = unknown
    std::string birthdate;     ///< as the backend states it
    std::string pictureUrl;    ///< address of the player's picture
    std::string pf;            ///< platform tag for payment and statistics
    std::string pfKey;         ///< key that belongs to pf
    bool realNameAuth = false; ///< the backend demands real-name authentication
    int32_t channelID = 0;     ///< Ferno 1, KZ 2, Steam 21
    std::string channel;       ///< the channel's name as given to VESKLogin::Login
    std::string channelInfo;   ///< JSON text of the channel's own data
    std::string reserved1;     ///< reserved; the SDK never writes it
    int64_t reserved2 = 0;     ///< reserved; the SDK never writes it
    std::string reserved3;     ///< reserved; the SDK never writes it
};

/// A QR code that the player is to scan.
struct VESKQrCodeRet : VESKBaseRet {
    int32_t channelID = 0; ///< Ferno 1, KZ 2
    std::string channel;   ///< "Ferno" or "KZ"
    std::string qrCodeUrl; ///< address of the QR code image
};

} // namespace VESK
} // namespace Braxel

#endif
