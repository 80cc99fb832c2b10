#include "cinterface/veskcrecords.h"

#include <cstddef>
#include <utility>

#include "vesk/veskerror.h"

namespace Braxel {
namespace VESK {

namespace {

// Programs are compiled against these layouts: a record may grow at its end only.
static_assert(offsetof(vesk_base_ret, ret_msg) == 16 && sizeof(vesk_base_ret) == 40,
              "the layout of vesk_base_ret has changed");
static_assert(offsetof(vesk_login_ret, token_expire) == 40 &&
                  offsetof(vesk_login_ret, channel) == 64 &&
                  offsetof(vesk_login_ret, pf_key) == 136,
              "the layout of vesk_login_ret has changed");
static_assert(offsetof(vesk_qr_code_ret, channel_id) == 40 &&
                  offsetof(vesk_qr_code_ret, qr_code_url) == 56,
              "the layout of vesk_qr_code_ret has changed");

static_assert(VESK_SUCCESS == VESKError::SUCCESS && VESK_NO_LOGIN == VESKError::NO_LOGIN &&
                  VESK_NETWORK_ERROR == VESKError::NETWORK_ERROR &&
                  VESK_SERVER_ERROR == VESKError::SERVER_ERROR &&
                  VESK_AUTOLOGIN_NOT_ALLOWED == VESKError::AUTOLOGIN_NOT_ALLOWED &&
                  VESK_CHANNEL_INIT_FAILED == VESKError::CHANNEL_INIT_FAILED &&
                  VESK_NEED_REALNAME == VESKError::NEED_REALNAME &&
                  VESK_NETWORK_RESPONSE_ERROR == VESKError::NETWORK_RESPONSE_ERROR &&
                  VESK_NO_STORED_LOGIN == VESKError::NO_STORED_LOGIN &&
                  VESK_TOKEN_EXPIRED == VESKError::TOKEN_EXPIRED &&
                  VESK_CHANNEL_LOGIN_FAILED == VESKError::CHANNEL_LOGIN_FAILED &&
                  VESK_LOGIN_CANCELLED == VESKError::LOGIN_CANCELLED &&
                  VESK_LOGIN_TIMED_OUT == VESKError::LOGIN_TIMED_OUT &&
                  VESK_UNKNOWN_CHANNEL == VESKError::UNKNOWN_CHANNEL &&
                  VESK_LOGIN_OVERTAKEN == VESKError::LOGIN_OVERTAKEN,
              "the codes of vesk_c.h are those of veskerror.h");

/// Fills what every record begins with.
template <typename Record>
Record Begin(const VESKBaseRet& ret) {
    Record record = {};
    record.struct_size = sizeof record;
    record.method_name_id = ret.methodNameID;
    record.ret_code = ret.retCode;
    record.third_code = ret.thirdCode;
    record.ret_msg = ret.retMsg.c_str();
    record.third_msg = ret.thirdMsg.c_str();
    record.extra_json = ret.extraJson.c_str();
    return record;
}

} // namespace

VESKHeldLoginRet::VESKHeldLoginRet(const VESKLoginRet& ret) : vesk_login_ret(), mRet(ret) {
    static_cast<vesk_login_ret&>(*this) = ToC(mRet);
}

bool VESKHeldResult::Hold(std::unique_ptr<VESKResult> result) noexcept {
    if (result == nullptr) {
        return false;
    }
    mResult = std::move(result);
    struct_size = sizeof(vesk_result);
    kind = mResult->kind;
    request = mResult->request;
    if (const auto* const loginRet = std::get_if<VESKLoginRet>(&mResult->ret)) {
        login = &mRecord.emplace<vesk_login_ret>(ToC(*loginRet));
    } else if (const auto* const baseRet = std::get_if<VESKBaseRet>(&mResult->ret)) {
        base = &mRecord.emplace<vesk_base_ret>(ToC(*baseRet));
    } else if (const auto* const qrCodeRet = std::get_if<VESKQrCodeRet>(&mResult->ret)) {
        qr_code = &mRecord.emplace<vesk_qr_code_ret>(ToC(*qrCodeRet));
    }
    return true;
}

vesk_base_ret ToC(const VESKBaseRet& ret) {
    return Begin<vesk_base_ret>(ret);
}

vesk_login_ret ToC(const VESKLoginRet& ret) {
    auto record = Begin<vesk_login_ret>(ret);
    record.token_expire = ret.tokenExpire;
    record.first_login = ret.firstLogin;
    record.gender = ret.gender;
    record.real_name_auth = ret.realNameAuth ? 1 : 0;
    record.channel_id = ret.channelID;
    record.channel = ret.channel.c_str();
    record.channel_info = ret.channelInfo.c_str();
    record.openid = ret.openid.c_str();
    record.token = ret.token.c_str();
    record.reg_channel_dis = ret.regChannelDis.c_str();
    record.user_name = ret.userName.c_str();
    record.birthdate = ret.birthdate.c_str();
    record.picture_url = ret.pictureUrl.c_str();
    record.pf = ret.pf.c_str();
    record.pf_key = ret.pfKey.c_str();
    return record;
}

vesk_qr_code_ret ToC(const VESKQrCodeRet& ret) {
    auto record = Begin<vesk_qr_code_ret>(ret);
    record.channel_id = ret.channelID;
    record.channel = ret.channel.c_str();
    record.qr_code_url = ret.qrCodeUrl.c_str();
    return record;
}

} // namespace VESK
} // namespace Braxel
