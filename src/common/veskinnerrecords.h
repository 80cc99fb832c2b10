#ifndef VESK_COMMON_VESKINNERRECORDS_H
#define VESK_COMMON_VESKINNERRECORDS_H

#include <cstdint>
#include <string>

#include "vesk/veskret.h"
#include "vesk/veskstring.h"

namespace Braxel {
namespace VESK {

/// What every result carries between the stages of the library; see VESKBaseRet for the fields.
struct InnerBaseRet {
    /// The name under which log lines know the type; each record has its own.
    static constexpr const char* kRecordName = "InnerBaseRet";

    int32_t methodNameID = 0;
    int32_t retCode;
    String retMsg;
    int32_t thirdCode = -1;
    String thirdMsg;
    String extraJson;

    InnerBaseRet() : InnerBaseRet(-1) {}
    /// Fills retMsg from the message table.
    explicit InnerBaseRet(int32_t code);

    std::string ToJson() const;
};

/// A login result; see VESKLoginRet for the fields. The last three never reach the game.
struct InnerLoginRet : InnerBaseRet {
    static constexpr const char* kRecordName = "InnerLoginRet";

    String openid;
    String token;
    int64_t tokenExpire = 0;
    int32_t firstLogin = 0;
    String regChannelDis;
    String userName;
    int32_t gender = 0;
    String birthdate;
    String pictureUrl;
    String pf;
    String pfKey;
    bool realNameAuth = false;
    int32_t channelID = 0;
    String channel;
    String channelInfo;
    String reserved1;
    int64_t reserved2 = 0;
    String reserved3;
    String uid;
    String reserved4;
    String seq;

    InnerLoginRet() = default;
    explicit InnerLoginRet(int32_t code) : InnerBaseRet(code) {}

    /// Forgets the account. Deliberate: the return code and its texts, reserved1 and reserved3
    /// keep their values.
    void resetLoginRet();

    /// The record under the backend's member names, so that a backend answer can be merged in.
    std::string ToJson() const;

    /// Takes over each member that ToJson() writes, where @p json has it.
    void FromJson(const std::string& json);
};

/// A QR code to show; see VESKQrCodeRet for the fields.
struct InnerQrCodeRet : InnerBaseRet {
    static constexpr const char* kRecordName = "InnerQrCodeRet";

    int32_t channelID = 0;
    String channel;
    String qrCodeUrl;

    using InnerBaseRet::InnerBaseRet;
};

/// What a channel hands back to the login core.
struct InnerLoginPluginRet {
    static constexpr const char* kRecordName = "InnerLoginPluginRet";

    int32_t methodNameID = 0;
    int32_t channelID = 0;
    std::string channel;
    std::string channelInfo; ///< JSON text of the channel credential
    std::string uid;         ///< the channel's own user id
    std::string reserved1;
    std::string reserved2;

    std::string ToJson() const;
};

/// The public form of a record, field by field.
VESKBaseRet ToPublic(const InnerBaseRet& inner);
VESKLoginRet ToPublic(const InnerLoginRet& inner);
VESKQrCodeRet ToPublic(const InnerQrCodeRet& inner);

} // namespace VESK
} // namespace Braxel

#endif
