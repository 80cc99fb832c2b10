#include "platformimpl/login/veskkz/veskkzwrapper.h"

#include "foundation/log/vesklogger.h"
#include "module/veskmodule.h"
#include "platformimpl/foundation/file/veskfileutils.h"
#include "platformimpl/foundation/os/deferredrelease.h"
#include "platformimpl/foundation/os/mutex.h"
#include "platformimpl/login/veskkz/veskkzevents.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr const char* kKZFile = "KZOpenSDK.dll";
} // namespace

std::shared_ptr<KZComponent> VESKKZWrapper::Component() {
    const std::lock_guard<os::Mutex> lock(mComponentMutex);
    return mComponent;
}

bool VESKKZWrapper::InitializeOpenSDK(const std::string& appID, const std::string& appKey) {
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Init OpenSDK");
    if (mInitialised) {
        VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Had already inited!");
        return false;
    }
    const std::string directory = VESKFileUtils::GetInstance()->GetLibraryDirectory();
    const std::string path = directory + kKZFile;
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Init OpenSDK from path:%s", path.c_str());
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Start load KZOpenSDK from path:%s",
                  path.c_str());
    const unsigned uninits = mUninits;
    std::shared_ptr<KZComponent> component = mMakeComponent();
    // A bare name would be searched for elsewhere.
    if (directory.empty() || !component->Create(path)) {
        VESK_LOG_ERROR("VESKKZWrapper::InitializeOpenSDK", "Create OpenSDK instance failed!");
        VESK_LOG_ERROR("VESKKZWrapper::InitializeOpenSDK", "Init OpenSDK failed");
        return false;
    }
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Create OpenSDK instance succeed");
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Create CComObject succeed");
    int32_t advised = 0;
    {
        const std::lock_guard<os::Mutex> lock(mMutex);
        advised = component->Advise(this);
    }
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Advise, result: %d", advised);
    if (advised >= 0) {
        VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Advise, result: %d succ!", advised);
    } else {
        VESK_LOG_ERROR("VESKKZWrapper::InitializeOpenSDK", "Advise, result: %d error!", advised);
    }
    if (!component->Initialize(appID, appKey) || !Publish(component, uninits)) {
        VESK_LOG_ERROR("VESKKZWrapper::InitializeOpenSDK", "Init OpenSDK failed");
        component->ShutDown();
        Release(std::move(component));
        return false;
    }
    VESK_LOG_INFO("VESKKZWrapper::InitializeOpenSDK", "Init OpenSDK succeed");
    return true;
}

bool VESKKZWrapper::Publish(const std::shared_ptr<KZComponent>& component, unsigned uninits) {
    const std::lock_guard<os::Mutex> lock(mComponentMutex);
    // Initialising takes its time: another thread may have been first, or have left already.
    if (mInitialised || uninits != mUninits) {
        return false;
    }
    mComponent = component;
    mInitialised = true;
    return true;
}

void VESKKZWrapper::Release(std::shared_ptr<KZComponent> component) {
    // Nobody can tell how long the event's thread stays in the component's code after the event.
    if (mActiveEvents != 0) {
        component->StayLoaded();
    }
    os::ReleaseWhenIdle([this] { return mActiveEvents == 0; },
                        [component = std::move(component)]() mutable { component.reset(); });
}

void VESKKZWrapper::UnInitializeOpenSDK() {
    VESK_LOG_INFO("VESKKZWrapper::UnInitializeOpenSDK", "UnInit OpenSDK");
    std::shared_ptr<KZComponent> component;
    {
        const std::lock_guard<os::Mutex> lock(mComponentMutex);
        ++mUninits;
        mInitialised = false;
        component.swap(mComponent);
    }
    if (!component) {
        VESK_LOG_INFO("VESKKZWrapper::UnInitializeOpenSDK",
                      "OpenSDK didn't init, no need to uninit");
        return;
    }
    if (component->ShutDown()) {
        VESK_LOG_INFO("VESKKZWrapper::UnInitializeOpenSDK", "Uninit OpenSDK succeed");
    } else {
        VESK_LOG_ERROR("VESKKZWrapper::UnInitializeOpenSDK", "UnInit OpenSDK failed");
    }
    Release(std::move(component));
}

std::string VESKKZWrapper::GetGenerateSerialNumber() {
    const std::shared_ptr<KZComponent> component = Component();
    if (!mInitialised || !component) {
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

void VESKKZWrapper::StartQrCodeLogin(const std::string& preCode) {
    const std::shared_ptr<KZComponent> component = Component();
    if (!mInitialised || !component) {
        VESK_LOG_ERROR("VESKKZWrapper::StartQrCodeLogin", "KZOpenSDK init failed!");
        return;
    }
    VESK_LOG_INFO("VESKKZWrapper::StartQrCodeLogin", "Start QrCode login, pre_code:%s",
                  preCode.c_str());
    if (component->LoginByQRCode(preCode)) {
        VESK_LOG_INFO("VESKKZWrapper::StartQrCodeLogin", "Call OpenSDK LoginByQRCode success");
    } else {
        VESK_LOG_ERROR("VESKKZWrapper::StartQrCodeLogin", "Call OpenSDK LoginByQRCode failed");
    }
}

bool VESKKZWrapper::AutoLogin(const std::string& openid) {
    const std::shared_ptr<KZComponent> component = Component();
    if (!mInitialised || !component) {
        VESK_LOG_ERROR("VESKKZWrapper::AutoLogin", "KZOpenSDK init failed!");
        return false;
    }
    VESK_LOG_INFO("VESKKZWrapper::AutoLogin", "Start KZ auto login, openid:%s", openid.c_str());
    VESK_LOG_INFO("VESKKZWrapper::AutoLogin", "Call KZOpenSDK GetLocalLoginList result:%d",
                  component->GetLocalLoginList());
    return true;
}

void VESKKZWrapper::GetLoginRecord(const std::string& oldToken) {
    const std::shared_ptr<KZComponent> component = Component();
    if (!mInitialised || !component) {
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
    const std::shared_ptr<KZComponent> component = Component();
    if (!mInitialised || !component) {
        VESK_LOG_ERROR("VESKKZWrapper::Logout", "KZOpenSDK init failed!");
        return;
    }
    VESK_LOG_INFO("VESKKZWrapper::Logout", "Start KZ logout");
    component->Logout();
    VESK_LOG_INFO("VESKKZWrapper::Logout", "KZ logout done");
}

void VESKKZWrapper::OnKZOpenSDKCallback(int32_t notifyType, const KZResult* result) {
    const VESKModule::Use use;
    ++mActiveEvents;
    try {
        VESK_LOG_INFO("VESKKZWrapper::OnKZOpenSDKCallback",
                      "Receive OpenSDK callback, notify type:%d", notifyType);
        VESKKZEvents(mNotify, Component()).Handle(notifyType, result);
    } catch (...) {
        VESK_LOG_ERROR("VESKKZWrapper::OnKZOpenSDKCallback",
                       "exception inside an event, it ends here");
    }
    --mActiveEvents;
}

} // namespace VESK
} // namespace Braxel
