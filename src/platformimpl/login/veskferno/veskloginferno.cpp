#include "platformimpl/login/veskferno/veskloginferno.h"

#include "config/veskconfigmanager.h"
#include "foundation/log/vesklogger.h"
#include "platformimpl/login/veskferno/veskfrwrapper.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr const char* kScopes =
    "group_sns_userinfo,group_sns_login,group_sns_base,group_sns_delegate_login";

} // namespace

VESKLoginFerno::VESKLoginFerno() : mAnswers(ChannelFacts("Ferno")) {}

void VESKLoginFerno::InitializeOpenSDK() {
    VESK_LOG_INFO("VESKLoginFerno::InitializeOpenSDK", "Init Ferno OpenSDK");
    const bool result = VESKFRWrapper::GetInstance()->InitializeOpenSDK();
    VESK_LOG_INFO("VESKLoginFerno::InitializeOpenSDK", "Init Ferno OpenSDK result:%d",
                  result ? 1 : 0);
    if (result) {
        VESK_LOG_INFO("VESKLoginFerno::InitializeOpenSDK", "Init Ferno OpenSDK succeed");
    } else {
        VESK_LOG_INFO("VESKLoginFerno::InitializeOpenSDK", "Init Ferno OpenSDK failed!");
    }
    // Also when another thread has just started it, and is not here yet.
    if (VESKFRWrapper::GetInstance()->IsInitialised()) {
        VESKFRWrapper::GetInstance()->SetNotify(this);
        mInitialised = true;
    }
}

bool VESKLoginFerno::QrCodeLogin(std::string seqID, std::string preCode, uint64_t order) {
    VESK_LOG_INFO("VESKLoginFerno::QrCodeLogin", "Start Ferno login, seqID:%s preCode:%s",
                  seqID.c_str(), preCode.c_str());
    if (!mInitialised) {
        InitializeOpenSDK();
    }
    if (!mAnswers.SetSeqID(seqID, order)) {
        return true;
    }
    const std::string appID = VESKConfigManager::GetInstance()->Get<const char*>("FERNO_APP_ID");
    return VESKFRWrapper::GetInstance()->Login(appID, preCode, kScopes);
}

void VESKLoginFerno::GetLoginRecord() {
    VESK_LOG_INFO("VESKLoginFerno::GetLoginRecord", "Start get Ferno login record");
    VESKFRWrapper::GetInstance()->GetLoginRecord();
}

void VESKLoginFerno::Logout(std::string seqID) {
    VESK_LOG_INFO("VESKLoginFerno::Logout", "Start Ferno logout");
    if (mInitialised) {
        VESKFRWrapper::GetInstance()->Logout();
    }
    VESK_LOG_INFO("VESKLoginFerno::Logout", "Ferno logout done");
    mAnswers.CommitLogout(seqID);
}

void VESKLoginFerno::OnInnerQrCodeNotify(const QrNotifyRecord& record) {
    VESK_LOG_INFO("VESKLoginFerno::OnInnerQrCodeNotify", "Get qrcode info, qrCodeUrl:%s",
                  record.qrCodeUrl.c_str());
    mAnswers.CommitQrCode(record);
}

void VESKLoginFerno::OnInnerLoginNotify(const LoginNotifyRecord& record) {
    VESK_LOG_INFO("VESKLoginFerno::OnInnerLoginNotify",
                  "Get platform login result, openID:%s token:%s", record.openid.c_str(),
                  record.token.c_str());
    mAnswers.CommitLogin(record);
}

void VESKLoginFerno::OnInnerGetLoginRecordNotify(const LoginNotifyRecord& record) {
    VESK_LOG_INFO("VESKLoginFerno::OnInnerGetLoginRecordNotify",
                  "Get platform refresh token result, openID:%s token:%s", record.openid.c_str(),
                  record.token.c_str());
    mAnswers.CommitLoginRecord(record);
}

} // namespace VESK
} // namespace Braxel
