#include "platformimpl/login/veskkz/veskkzwrapper.h"

#include "foundation/log/vesklogger.h"
#include "module/veskmutex.h"
#include "platformimpl/foundation/file/veskfileutils.h"
#include "platformimpl/login/veskkz/veskkzevents.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr const char* kKZFile = "KZOpenSDK.dll";
} // namespace

VESKKZWrapper::Call::Call(VESKKZWrapper& wrapper) : mCall(wrapper.mLife) {
    if (mCall && wrapper.IsInitialised()) {
        const std::lock_guard<VESKMutex> lock(wrapper.mComponentMutex);
        mComponent = wrapper.mComponent;
    }
}

bool VESKKZWrapper::InitializeOpenSDK(const std::string& appID, const std::string& appKey) {
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Init OpenSDK");
    VESKComponentLife::Start start(mLife);
    if (!start) {
        if (IsInitialised()) {
            VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Had already inited!");
        } else {
            VESK_LOG_ERROR("VESKKZWrapper::InitializeOpenSDK", "Init OpenSDK failed");
        }
        return false;
    }
    const std::string directory = VESKFileUtils::GetInstance()->GetLibraryDirectory();
    const std::string path = directory + kKZFile;
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Init OpenSDK from path:%s", path.c_str());
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Start load KZOpenSDK from path:%s",
                  path.c_str());
    const std::shared_ptr<KZComponent> component = mMakeComponent();
    // A bare name would be searched for elsewhere.
    if (directory.empty() || !component->Create(path)) {
        VESK_LOG_ERROR("VESKKZWrapper::InitializeOpenSDK", "Create OpenSDK instance failed!");
        VESK_LOG_ERROR("VESKKZWrapper::InitializeOpenSDK", "Init OpenSDK failed");
        return false;
    }
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Create OpenSDK instance succeed");
    const bool started = StartComponent(*component, appID, appKey);
    {
        const std::lock_guard<VESKMutex> lock(mComponentMutex);
        mComponent = component; // used only once it is published
    }
    if (!started || !start.Publish()) {
        VESK_LOG_ERROR("VESKKZWrapper::InitializeOpenSDK", "Init OpenSDK failed");
        Depart(component, started);
        return false;
    }
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Init OpenSDK succeed");
    return true;
}

bool VESKKZWrapper::StartComponent(KZComponent& component, const std::string& appID,
                                   const std::string& appKey) {
    if (!component.MakeSink(this)) {
        VESK_LOG_ERROR("VESKKZWrapper::InitializeOpenSDK", "Create CComObject failed!");
        return false;
    }
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Create CComObject succeed");
    int32_t advised = 0;
    {
        const std::lock_guard<VESKMutex> lock(mMutex);
        advised = component.Advise();
    }
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Advise, result: %d", advised);
    if (advised >= 0) {
        VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Advise, result: %d succ!", advised);
    } else {
        VESK_LOG_ERROR("VESKKZWrapper::InitializeOpenSDK", "Advise, result: %d error!", advised);
    }
    mAdvised = advised;
    return component.Initialize(appID, appKey);
}

void VESKKZWrapper::UnInitializeOpenSDK() {
    VESK_LOG_INFO("VESKKZWrapper::UnInitializeOpenSDK", "UnInit OpenSDK");
    if (mLife.End() != VESKComponentLife::Stage::kRunning) {
        VESK_LOG_INFO("VESKKZWrapper::UnInitializeOpenSDK",
                      "OpenSDK didn't init, no need to uninit");
        return;
    }
    std::shared_ptr<KZComponent> component;
    {
        const std::lock_guard<VESKMutex> lock(mComponentMutex);
        component = mComponent;
    }
    Depart(component, true);
}

void VESKKZWrapper::Depart(const std::shared_ptr<KZComponent>& component, bool wasRunning) {
    const auto stop = [component, wasRunning] {
        const bool stopped = component->ShutDown();
        if (!wasRunning) {
            return true; // there was nothing to stop
        }
        if (stopped) {
            VESK_LOG_INFO("VESKKZWrapper::UnInitializeOpenSDK", "Uninit OpenSDK succeed");
        } else {
            VESK_LOG_ERROR("VESKKZWrapper::UnInitializeOpenSDK", "UnInit OpenSDK failed");
        }
        return stopped;
    };
    const auto unload = [this, component] {
        {
            const std::lock_guard<VESKMutex> lock(mComponentMutex);
            if (mComponent == component) {
                mComponent.reset();
            }
        }
        return component->Unload();
    };
    mLife.Depart({stop, unload});
}

std::string VESKKZWrapper::GetGenerateSerialNumber() {
    const Call component(*this);
    if (!component) {
        VESK_LOG_ERROR("VESKKZWrapper::GetGenerateSerialNumber", "KZOpenSDK init failed!");
        return {};
    }
    VESK_LOG_INFO("VESKKZWrapper::GetGenerateSerialNumber",
                  "Ask KZ OpenSDK for generate serial number");
    std::string number = component->GetGenerateSerialNumber();
    if (number.empty()) {
        VESK_LOG_ERROR("VESKKZWrapper::GetGenerateSerialNumber",
                       "Get generate serial number failed!");
    } else {
        VESK_LOG_INFO("VESKKZWrapper::GetGenerateSerialNumber", "Get generate serial number:%s",
                      number.c_str());
    }
    return number;
}

bool VESKKZWrapper::StartQrCodeLogin(const std::string& preCode) {
    const Call component(*this);
    if (!component) {
        VESK_LOG_ERROR("VESKKZWrapper::StartQrCodeLogin", "KZOpenSDK init failed!");
        return false;
    }
    VESK_LOG_INFO("VESKKZWrapper::StartQrCodeLogin", "Start QrCode login, pre_code:%s",
                  preCode.c_str());
    const bool isTaken = component->LoginByQRCode(preCode);
    if (isTaken) {
        VESK_LOG_INFO("VESKKZWrapper::StartQrCodeLogin", "Call OpenSDK LoginByQRCode success");
    } else {
        VESK_LOG_ERROR("VESKKZWrapper::StartQrCodeLogin", "Call OpenSDK LoginByQRCode failed");
    }
    return isTaken;
}

bool VESKKZWrapper::AutoLogin(const std::string& openid) {
    const Call component(*this);
    if (!component) {
        VESK_LOG_ERROR("VESKKZWrapper::AutoLogin", "KZOpenSDK init failed!");
        return false;
    }
    VESK_LOG_INFO("VESKKZWrapper::AutoLogin", "Start KZ auto login, openid:%s", openid.c_str());
    VESK_LOG_INFO("VESKKZWrapper::AutoLogin", "Call KZOpenSDK GetLocalLoginList result:%d",
                  component->GetLocalLoginList());
    return true;
}

void VESKKZWrapper::GetLoginRecord(const std::string& oldToken) {
    const Call component(*this);
    if (!component) {
        VESK_LOG_ERROR("VESKKZWrapper::GetLoginRecord", "KZOpenSDK init failed!");
        return;
    }
    VESK_LOG_INFO("VESKKZWrapper::GetLoginRecord", "Start get KZ login record, old_token:%s",
                  oldToken.c_str());
    if (component->RefreshClientTempKey()) {
        VESK_LOG_INFO("VESKKZWrapper::GetLoginRecord", "Call OpenSDK RefreshClientTempKey success");
    } else {
        VESK_LOG_ERROR("VESKKZWrapper::GetLoginRecord", "Call OpenSDK RefreshClientTempKey failed");
    }
}

void VESKKZWrapper::Logout() {
    const Call component(*this);
    if (!component) {
        VESK_LOG_ERROR("VESKKZWrapper::Logout", "KZOpenSDK init failed!");
        return;
    }
    VESK_LOG_INFO("VESKKZWrapper::Logout", "Start KZ logout");
    component->Logout();
    VESK_LOG_INFO("VESKKZWrapper::Logout", "KZ logout done");
}

bool VESKKZWrapper::LoginByLocalLoginUser(const std::string& openid) {
    const Call component(*this);
    return component && component->LoginByLocalLoginUser(openid);
}

void VESKKZWrapper::OnKZOpenSDKCallback(int32_t notifyType, const KZResult* result) {
    const VESKComponentLife::Callback callback(mLife);
    VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback", "Receive OpenSDK callback, notify type:%d",
                  notifyType);
    if (!callback) {
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback",
                      "a callback after the end, it reaches nobody");
        return;
    }
    try {
        VESKKZEvents(mNotify, [this](const std::string& openid) {
            return LoginByLocalLoginUser(openid);
        }).Handle(notifyType, result);
    } catch (...) {
        VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback",
                       "exception inside an event, it ends here");
    }
}

} // namespace VESK
} // namespace Braxel
