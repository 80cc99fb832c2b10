#include "platformimpl/login/veskkz/veskloginkz.h"

#include <cinttypes>
#include <cstdio>

#include "common/veskdefine.h"
#include "config/veskconfigmanager.h"
#include "foundation/log/vesklogger.h"
#include "platformimpl/login/veskkz/veskkzwrapper.h"
#include "vesk/veskerror.h"

namespace Braxel {
namespace VESK {

VESKLoginKZ::VESKLoginKZ() : mAnswers(ChannelFacts("KZ")) {}

void VESKLoginKZ::InitializeOpenSDK() {
    VESK_LOG_INFO("VESKLoginKZ::InitializeOpenSDK", "Init KZ OpenSDK");
    const std::string appID = VESKConfigManager::GetInstance()->Get<const char*>("KZ_APP_ID");
    const std::string appKey = VESKConfigManager::GetInstance()->Get<const char*>("KZ_APP_KEY");
    const bool result = VESKKZWrapper::GetInstance()->InitializeOpenSDK(appID, appKey);
    VESK_LOG_INFO("VESKLoginKZ::InitializeOpenSDK", "Init KZ OpenSDK result:%d", result ? 1 : 0);
    if (result) {
        VESK_LOG_INFO("VESKLoginKZ::InitializeOpenSDK", "Init KZ OpenSDK succeed");
    } else {
        VESK_LOG_INFO("VESKLoginKZ::InitializeOpenSDK", "Init KZ OpenSDK failed!");
    }
    // Also when another thread has just started it, and is not here yet.
    if (VESKKZWrapper::GetInstance()->IsInitialised()) {
        VESKKZWrapper::GetInstance()->SetNotify(this);
        mInitialised = true;
    }
}

bool VESKLoginKZ::QrCodeLogin(std::string seqID, std::string preCode, uint64_t order) {
    VESK_LOG_INFO("VESKLoginKZ::QrCodeLogin", "QrCode login, seqID:%s preCode:%s", seqID.c_str(),
                  preCode.c_str());
    if (!mInitialised) {
        InitializeOpenSDK();
    }
    return !mAnswers.SetSeqID(seqID, order) || AnswerWithoutEvents(seqID) ||
           VESKKZWrapper::GetInstance()->StartQrCodeLogin(preCode);
}

void VESKLoginKZ::AutoLogin(std::string seqID, std::string openid, uint64_t order) {
    VESK_LOG_INFO("VESKLoginKZ::AutoLogin", "Auto login, seqID:%s openid:%s", seqID.c_str(),
                  openid.c_str());
    if (!mInitialised) {
        InitializeOpenSDK();
    }
    if (!mAnswers.SetSeqID(seqID, order) || AnswerWithoutEvents(seqID)) {
        return;
    }
    if (!VESKKZWrapper::GetInstance()->AutoLogin(openid)) {
        mAnswers.CommitLoginFailure(seqID);
    }
}

bool VESKLoginKZ::AnswerWithoutEvents(const std::string& seqID) {
    const int32_t advised = VESKKZWrapper::GetInstance()->AdviseResult();
    if (advised >= 0) {
        return false;
    }
    char text[96] = {};
    std::snprintf(text, sizeof text,
                  "KZ OpenSDK events cannot be received! Advise failed: 0x%08" PRIX32,
                  static_cast<uint32_t>(advised));
    VESK_LOG_ERROR("VESKLoginKZ::AnswerWithoutEvents", "%s", text);
    InnerLoginRet ret(VESKError::CHANNEL_INIT_FAILED);
    ret.methodNameID = kMethodNameLogin;
    ret.retMsg = text;
    VESKInnerObserverHolder<InnerLoginRet>::CommitToTaskQueue(ret, kObserverIDLoginRet, seqID);
    return true;
}

void VESKLoginKZ::GetLoginRecord(std::string oldToken) {
    VESK_LOG_INFO("VESKLoginKZ::GetLoginRecord", "Start get KZ login record");
    VESKKZWrapper::GetInstance()->GetLoginRecord(oldToken);
}

void VESKLoginKZ::Logout(std::string seqID) {
    VESK_LOG_INFO("VESKLoginKZ::Logout", "Start KZ logout");
    if (mInitialised) {
        VESKKZWrapper::GetInstance()->Logout();
    }
    VESK_LOG_INFO("VESKLoginKZ::Logout", "KZ logout done");
    mAnswers.CommitLogout(seqID);
}

void VESKLoginKZ::OnInnerQrCodeNotify(const QrNotifyRecord& record) {
    VESK_LOG_INFO("VESKLoginKZ::OnInnerQrCodeNotify", "Get qrcode info, qrCodeUrl:%s",
                  record.qrCodeUrl.c_str());
    mAnswers.CommitQrCode(record);
}

void VESKLoginKZ::OnInnerLoginNotify(const LoginNotifyRecord& record) {
    VESK_LOG_INFO("VESKLoginKZ::OnInnerLoginNotify",
                  "Get platform login result, openID:%s token:%s", record.openid.c_str(),
                  record.token.c_str());
    mAnswers.CommitLogin(record);
}

void VESKLoginKZ::OnInnerGetLoginRecordNotify(const LoginNotifyRecord& record) {
    VESK_LOG_INFO("VESKLoginKZ::OnInnerGetLoginRecordNotify",
                  "Get platform refresh token result, openID:%s token:%s", record.openid.c_str(),
                  record.token.c_str());
    mAnswers.CommitLoginRecord(record);
}

} // namespace VESK
} // namespace Braxel
