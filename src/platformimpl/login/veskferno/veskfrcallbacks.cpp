#include "platformimpl/login/veskferno/veskfrcallbacks.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include "foundation/log/vesklogger.h"
#include "platformimpl/foundation/os/clock.h"
#include "platformimpl/login/veskferno/veskfrwrapper.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr uint32_t kWaitingForConfirmation = 10008;

/// No text that a messenger sends comes near. A length above it is no length: a failure's -1, or
/// the upper half of something else.
constexpr uint32_t kLongestText = uint32_t{1} << 20;

std::string Text(const char* method, const char* text, uint32_t length) {
    if (text == nullptr) {
        return {};
    }
    if (length > kLongestText) {
        VESK_LOG_AT(kLogError, method, "a text of %u bytes cannot be, it is taken as empty",
                    static_cast<unsigned>(length));
        return {};
    }
    return std::string(text, length);
}

long long SecondsLeft(uint64_t expiryTick) {
    return static_cast<long long>(static_cast<int64_t>(expiryTick - os::TickCount())) / 1000;
}

std::string WithCodes(const char* message, uint32_t errType, int32_t errCode) {
    return std::string(message) + " Error type:" + std::to_string(errType) +
           " Error code:" + std::to_string(errCode);
}

LoginNotifyRecord Success(const char* message, const std::string& openid, const std::string& token,
                          uint32_t tokenTimeout) {
    LoginNotifyRecord record;
    record.message = message;
    record.channel = "Ferno";
    record.openid = openid;
    record.token = token;
    record.tokenExpire = os::UnixSeconds() + tokenTimeout;
    return record;
}

/// Stands in while no observer is registered: answers are logged and end here.
class NoNotify : public VESKChannelNotify {
public:
    void OnInnerQrCodeNotify(const QrNotifyRecord& /*record*/) override {}
    void OnInnerLoginNotify(const LoginNotifyRecord& /*record*/) override {}
    void OnInnerGetLoginRecordNotify(const LoginNotifyRecord& /*record*/) override {}
};

} // namespace

template <typename Body>
void VESKFRCallbacks::Guarded(const char* method, const Body& body) {
    VESKFRWrapper* wrapper = VESKFRWrapper::GetInstance();
    const VESKComponentLife::Callback callback(wrapper->mLife);
    if (!callback) {
        // Not even its texts are looked at: they may be gone like the rest of the component.
        VESK_LOG_AT(kLogInfo, method, "a callback after the end, it reaches nobody");
        return;
    }
    try {
        NoNotify none;
        VESKChannelNotify* notify = wrapper->mNotify;
        body(notify == nullptr ? none : *notify);
    } catch (...) {
        VESK_LOG_AT(kLogError, method, "exception inside a callback, it ends here");
    }
}

FrCallbackTable* VESKFRCallbacks::MakeTable() {
    void* memory = std::calloc(1, sizeof(FrCallbackTable));
    FrCallbackTable* table = static_cast<FrCallbackTable*>(memory);
    if (table != nullptr) {
        table->qrcodeResp = &qrcode_resp;
        table->loginResp = &login_resp;
        table->clientTmpTokenResp = &client_tmp_token_resp;
        table->onKickOut = &on_kickout;
        table->onUserStateException = &on_user_state_exception;
    }
    return table;
}

void VESKFRCallbacks::qrcode_resp(uint32_t errType, int32_t errCode, const char* url,
                                  uint32_t urlLength, uint64_t timeout, uint64_t expiryTick) {
    constexpr const char* kMethod = "Braxel::VESK::VESKFRWrapper::qrcode_resp";
    Guarded(kMethod, [&](VESKChannelNotify& notify) {
        VESK_LOG_INFO("VESKFRWrapper::qrcode_resp", "Got qrcode resp, err_type: %d errcode: %d",
                      static_cast<int>(errType), errCode);
        if (errType != 0) {
            const std::string message = WithCodes("Ferno get qrcode failed!", errType, errCode);
            VESK_LOG_ERROR("VESKFRWrapper::qrcode_resp", "%s", message.c_str());
            notify.OnInnerLoginNotify(NotifyFailure("Ferno", message));
            return;
        }
        QrNotifyRecord record;
        record.channel = "Ferno";
        record.qrCodeUrl = Text(kMethod, url, urlLength);
        VESK_LOG_INFO("VESKFRWrapper::qrcode_resp",
                      "Got qrcode succeed, qrcode timeout: %llu  url: %s %d %d %lld",
                      static_cast<unsigned long long>(timeout), record.qrCodeUrl.c_str(),
                      static_cast<int>(std::strlen(record.qrCodeUrl.c_str())),
                      static_cast<int>(urlLength), SecondsLeft(expiryTick));
        VESK_LOG_INFO("VESKFRWrapper::qrcode_resp", "qrcode url:%s", record.qrCodeUrl.c_str());
        notify.OnInnerQrCodeNotify(record);
    });
}

void VESKFRCallbacks::login_resp(uint32_t errType, int32_t errCode, const char* ctt,
                                 uint32_t cttLength, const char* openid, uint32_t openidLength,
                                 const char* sessionKey, uint32_t sessionKeyLength,
                                 uint32_t cttTimeout, uint64_t expiryTick) {
    constexpr const char* kMethod = "Braxel::VESK::VESKFRWrapper::login_resp";
    Guarded(kMethod, [&](VESKChannelNotify& notify) {
        VESK_LOG_INFO("VESKFRWrapper::login_resp", "login resp, err_type: %d errcode: %d",
                      static_cast<int>(errType), errCode);
        if (errType == kWaitingForConfirmation) {
            VESK_LOG_INFO("VESKFRWrapper::login_resp", "Qrcode was scaned, waiting for confirm");
            return;
        }
        if (errType != 0) {
            const std::string message = WithCodes("Ferno login failed!", errType, errCode);
            VESK_LOG_ERROR("VESKFRWrapper::login_resp", "%s", message.c_str());
            notify.OnInnerLoginNotify(NotifyFailure("Ferno", message));
            return;
        }
        const std::string token = Text(kMethod, ctt, cttLength);
        const std::string user = Text(kMethod, openid, openidLength);
        VESK_LOG_INFO("VESKFRWrapper::login_resp",
                      "Ferno login succeed, ctt:%s, openid:%s, sessionkey:%s ctt_timeout:%u %lld",
                      token.c_str(), user.c_str(),
                      Text(kMethod, sessionKey, sessionKeyLength).c_str(), cttTimeout,
                      SecondsLeft(expiryTick));
        notify.OnInnerLoginNotify(Success("Ferno login succeess", user, token, cttTimeout));
    });
}

void VESKFRCallbacks::client_tmp_token_resp(uint32_t errType, int32_t errCode, const char* ctt,
                                            uint32_t cttLength, const char* openid,
                                            uint32_t openidLength, const char* sessionKey,
                                            uint32_t sessionKeyLength, uint32_t cttTimeout,
                                            uint64_t expiryTick) {
    constexpr const char* kMethod = "Braxel::VESK::VESKFRWrapper::client_tmp_token_resp";
    Guarded(kMethod, [&](VESKChannelNotify& notify) {
        VESK_LOG_INFO("VESKFRWrapper::client_tmp_token_resp",
                      "Get login record resp, err_type: %d errcode: %d", static_cast<int>(errType),
                      errCode);
        if (errType != 0) {
            const std::string message =
                WithCodes("Get Ferno login record failed!", errType, errCode);
            VESK_LOG_ERROR("VESKFRWrapper::client_tmp_token_resp", "%s", message.c_str());
            notify.OnInnerGetLoginRecordNotify(NotifyFailure("Ferno", message));
            return;
        }
        const std::string token = Text(kMethod, ctt, cttLength);
        const std::string user = Text(kMethod, openid, openidLength);
        VESK_LOG_INFO("VESKFRWrapper::client_tmp_token_resp",
                      "Get Ferno login record succeed, ctt:%s, openid:%s, sessionkey:%s "
                      "ctt_timeout:%u %lld",
                      token.c_str(), user.c_str(),
                      Text(kMethod, sessionKey, sessionKeyLength).c_str(), cttTimeout,
                      SecondsLeft(expiryTick));
        notify.OnInnerGetLoginRecordNotify(
            Success("Get Ferno login record succeess", user, token, cttTimeout));
    });
}

void VESKFRCallbacks::on_kickout(int32_t errCode) {
    constexpr const char* kMethod = "Braxel::VESK::VESKFRWrapper::on_kickout";
    Guarded(kMethod, [&](VESKChannelNotify& notify) {
        const std::string message =
            "Account had been kicked out! Error code:" + std::to_string(errCode);
        VESK_LOG_ERROR("VESKFRWrapper::on_kickout", "%s", message.c_str());
        notify.OnInnerLoginNotify(NotifyFailure("Ferno", message));
    });
}

void VESKFRCallbacks::on_user_state_exception() {
    constexpr const char* kMethod = "Braxel::VESK::VESKFRWrapper::on_user_state_exception";
    Guarded(kMethod, [&](VESKChannelNotify& notify) {
        const std::string message = "Account state exception, need to login again";
        VESK_LOG_ERROR("VESKFRWrapper::on_user_state_exception", "%s", message.c_str());
        notify.OnInnerLoginNotify(NotifyFailure("Ferno", message));
    });
}

} // namespace VESK
} // namespace Braxel
