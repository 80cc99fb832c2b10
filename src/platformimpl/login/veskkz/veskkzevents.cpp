#include "platformimpl/login/veskkz/veskkzevents.h"

#include "foundation/log/vesklogger.h"
#include "platformimpl/foundation/os/clock.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr const char* kLocalUserUnusable = "Openid illegal or KZOpenSDK not init!";

enum NotifyType : int32_t {
    kNotifyUnknown = 0,
    kNotifySDKEvent = 1,
    kNotifyQrCodeInfo = 2,
    kNotifyQrCodeLogin = 3,
    kNotifyPlatformKey = 6,
    kNotifyPlatformKeyLogin = 7,
    kNotifyLocalLoginList = 8,
    kNotifyLocalLoginUser = 9,
    kNotifyLoginRecord = 10,
    kNotifyUserInfo = 11,
};

constexpr const char* kStateNames[] = {
    "OpenSDK_QrScanResult_Unknown", "OpenSDK_QrScanResult_UnScan",  "OpenSDK_QrScanResult_Scanned",
    "OpenSDK_QrScanResult_Success", "OpenSDK_QrScanResult_Expired", "OpenSDK_QrScanResult_Cancel",
    "OpenSDK_QrScanResult_Failed",
};
constexpr int32_t kStateUnscanned = 1;
constexpr int32_t kStateScanned = 2;
constexpr int32_t kStateSuccess = 3;
constexpr int32_t kStateExpired = 4;
constexpr int32_t kStateFailed = 6;

/// Stands in for a missing result object: nothing can be read from it.
class NoResult : public KZResult {
public:
    int32_t GetInt(const wchar_t* /*name*/, int32_t defValue) const override { return defValue; }
    std::string GetText(const wchar_t* /*name*/) const override { return {}; }
    int32_t GetListSize(const wchar_t* /*name*/) const override { return -1; }
    std::unique_ptr<KZResult> GetListEntry(const wchar_t* /*name*/,
                                           int32_t /*index*/) const override {
        return nullptr;
    }
};

/// The login that an event carries.
LoginNotifyRecord Success(const KZResult& result, const char* message) {
    LoginNotifyRecord record;
    record.message = message;
    record.channel = "KZ";
    record.openid = result.GetText(L"openid");
    record.token = result.GetText(L"ctk");
    record.tokenExpire = os::UnixSeconds();
    return record;
}

/// A missing code must not pass for success.
int32_t ResultCode(const KZResult& result) {
    return result.GetInt(L"ResultCode", -1);
}

} // namespace

void VESKKZEvents::Handle(int32_t notifyType, const KZResult* result) {
    if (notifyType == kNotifyUnknown) {
        OnUnknown(result);
    } else {
        const NoResult none;
        Dispatch(notifyType, result == nullptr ? none : *result);
    }
}

void VESKKZEvents::Dispatch(int32_t notifyType, const KZResult& result) {
    switch (notifyType) {
    case kNotifySDKEvent:
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "OpenSDK_Notify_SDKEvent");
        break;
    case kNotifyQrCodeInfo:
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback",
                      "OpenSDK_Notify_LoginByQRCode_QRCodeInfo");
        OnQrCodeInfo(result);
        break;
    case kNotifyQrCodeLogin:
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "OpenSDK_Notify_LoginByQRCode");
        OnQrCodeLogin(result);
        break;
    case kNotifyPlatformKey:
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "OpenSDK_Notify_GetPlatformKey");
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "PlatformKey:%s",
                      result.GetText(L"platformkey").c_str());
        break;
    case kNotifyPlatformKeyLogin:
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "OpenSDK_Notify_LoginByPlatformKey");
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "ResultCode:%d", ResultCode(result));
        break;
    case kNotifyLocalLoginList:
        OnLocalLoginList(result);
        break;
    case kNotifyLocalLoginUser:
        OnLocalLoginUser(result);
        break;
    case kNotifyLoginRecord:
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "OpenSDK_Notify_RefreshClientTempKey");
        OnLoginRecord(result);
        break;
    case kNotifyUserInfo:
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "OpenSDK_Notify_GetUserInfo");
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "User Info:%s",
                      result.GetText(L"body").c_str());
        break;
    default:
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "Unknown type:%d", notifyType);
        break;
    }
}

void VESKKZEvents::OnUnknown(const KZResult* result) {
    VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "OpenSDK_Notify_Unknown");
    if (result == nullptr) {
        ReportLoginFailure("pResult is nullptr");
        return;
    }
    const std::string text = result->GetText(L"result");
    ReportLoginRecordFailure(text.empty() ? "result is NULL or length is zero" : "result:" + text);
}

void VESKKZEvents::OnQrCodeInfo(const KZResult& result) {
    QrNotifyRecord record;
    record.channel = "KZ";
    record.qrCodeUrl = result.GetText(L"QRCodeImageUrl");
    const std::string id = result.GetText(L"QRCodeID");
    const int32_t state = result.GetInt(L"QRCodeState", 0);
    VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback",
                  "Qrcode info, image url:%s, id:%s, state:%d result message:%s",
                  record.qrCodeUrl.c_str(), id.c_str(), state,
                  result.GetText(L"ResultMessage").c_str());
    if (state >= 0 && state <= kStateFailed) {
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "%s", kStateNames[state]);
    }
    // Deliberate: whatever the state, so that every fresh image reaches the game.
    if (!record.qrCodeUrl.empty() && !id.empty() && mNotify != nullptr) {
        mNotify->OnInnerQrCodeNotify(record);
    }
}

void VESKKZEvents::OnQrCodeLogin(const KZResult& result) {
    const int32_t resultCode = ResultCode(result);
    if (resultCode != 0) {
        OnQrCodeLoginFailed(result, resultCode);
        return;
    }
    const int32_t state = result.GetInt(L"QRCodeState", 0);
    if (state == kStateUnscanned || state == kStateScanned) {
        // Deliberate: both states under the one name.
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "%s", kStateNames[kStateUnscanned]);
    } else if (state == kStateSuccess) {
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "%s", kStateNames[kStateSuccess]);
        ReportLogin(result);
    }
}

void VESKKZEvents::OnQrCodeLoginFailed(const KZResult& result, int32_t resultCode) {
    VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback", "OpenSDK QrScanResult ResultCode Error!");
    const std::string message = result.GetText(L"ResultMessage");
    const int32_t errorCode = result.GetInt(L"ErrorCode", 0);
    VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback",
                   "OpenSDK QrScanResult ResultCode:%d ResultMessage:%s", resultCode,
                   message.c_str());
    if (errorCode == 1) {
        VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback", "OpenSDK QrScanResult had logined");
    }
    const int32_t state = result.GetInt(L"QRCodeState", 0);
    const bool isNamed = state >= kStateExpired && state <= kStateFailed;
    VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "%s", kStateNames[isNamed ? state : 0]);
    ReportLoginFailure(message);
}

void VESKKZEvents::OnLocalLoginList(const KZResult& result) {
    const int32_t resultCode = ResultCode(result);
    VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback",
                  "OpenSDK_Notify_GetLocalLoginList RelultCode:%d", resultCode);
    if (resultCode != 0) {
        VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback",
                       "KZOpenSDK get local login list failed!");
        return;
    }
    const int32_t size = result.GetListSize(L"LocalLoginList");
    if (size < 0) {
        VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback", "KZOpenSDK local login list NULL!");
        ReportLoginRecordFailure("KZOpenSDK local login list NULL");
        return;
    }
    if (size == 0) {
        VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback",
                       "KZOpenSDK local login list size zero!");
        ReportLoginRecordFailure("KZOpenSDK local login list size zero");
        return;
    }
    const std::unique_ptr<KZResult> entry = result.GetListEntry(L"LocalLoginList", 0);
    if (!entry) {
        VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback", "KZOpenSDK get login info failed!");
        ReportLoginRecordFailure("KZOpenSDK get login info failed");
        return;
    }
    const std::string openid = entry->GetText(L"openid");
    VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "KZOpenSDK get openid:%s", openid.c_str());
    if (openid.empty() || !mLoginLocalUser(openid)) {
        VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback", "%s", kLocalUserUnusable);
        ReportLoginRecordFailure(kLocalUserUnusable);
    }
}

void VESKKZEvents::OnLocalLoginUser(const KZResult& result) {
    if (ResultCode(result) == 0) {
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback",
                      "OpenSDK_Notify_LoginByLocalLoginUser success");
        ReportLogin(result);
        return;
    }
    VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback",
                   "OpenSDK_Notify_LoginByLocalLoginUser failed!");
    VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback", "Error code:%d msg:%s",
                   result.GetInt(L"ErrorCode", 0), result.GetText(L"ResultMessage").c_str());
    VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback", "%s", kLocalUserUnusable);
    ReportLoginRecordFailure(kLocalUserUnusable);
}

void VESKKZEvents::OnLoginRecord(const KZResult& result) {
    const int32_t resultCode = ResultCode(result);
    if (resultCode != 0) {
        VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback",
                       "OpenSDK Refresh Client TempKey ResultCode Error!");
        VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback",
                       "OpenSDK Refresh Client TempKey ResultCode:%d ResultMessage:%s", resultCode,
                       result.GetText(L"ResultMessage").c_str());
        // Deliberate: whatever the component said.
        ReportLoginRecordFailure("OpenSDK did not login, please do login first");
        return;
    }
    const LoginNotifyRecord record = Success(result, "Get login record succeess");
    VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "Refresh token succeed! openid:%s ctk:%s",
                  record.openid.c_str(), record.token.c_str());
    if (mNotify != nullptr) {
        mNotify->OnInnerGetLoginRecordNotify(record);
    }
}

void VESKKZEvents::ReportLogin(const KZResult& result) {
    const LoginNotifyRecord record = Success(result, "KZ login succeess");
    VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "KZ login succeed! openid:%s ctk:%s",
                  record.openid.c_str(), record.token.c_str());
    if (mNotify != nullptr) {
        mNotify->OnInnerLoginNotify(record);
    }
}

void VESKKZEvents::ReportLoginFailure(const std::string& message) {
    if (mNotify != nullptr) {
        mNotify->OnInnerLoginNotify(NotifyFailure("KZ", message));
    }
}

void VESKKZEvents::ReportLoginRecordFailure(const std::string& message) {
    if (mNotify != nullptr) {
        mNotify->OnInnerGetLoginRecordNotify(NotifyFailure("KZ", message));
    }
}

} // namespace VESK
} // namespace Braxel
