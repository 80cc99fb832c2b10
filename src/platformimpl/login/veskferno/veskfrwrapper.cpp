#include "platformimpl/login/veskferno/veskfrwrapper.h"

#include <cstdlib>
#include <memory>

#include "foundation/log/vesklogger.h"
#include "module/veskmutex.h"
#include "platformimpl/foundation/file/veskfileutils.h"
#include "platformimpl/login/veskferno/veskfrcallbacks.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr const char* kFernoFile = "frlogin.dll";

} // namespace

os::DynamicLibrary VESKFRWrapper::Library() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return mLibrary;
}

void VESKFRWrapper::Publish(const os::DynamicLibrary& library, FrCallbackTable* table) {
    os::DynamicLibrary former;
    {
        const std::lock_guard<VESKMutex> lock(mMutex);
        former = mLibrary; // of a start that found no frlogin_init
        mLibrary = library;
        mCallbacks = table;
    }
    former.Close();
}

bool VESKFRWrapper::InitializeOpenSDK() {
    VESKComponentLife::Start start(mLife);
    if (!start) {
        if (IsInitialised()) {
            VESK_LOG_INFO("VESKFRWrapper::InitializeOpenSDK", "Had already inited!");
        } else {
            VESK_LOG_ERROR("VESKFRWrapper::InitializeOpenSDK",
                           "frlogin.dll has been ended, or its start does not end");
        }
        return false;
    }
    const std::string directory = VESKFileUtils::GetInstance()->GetLibraryDirectory();
    const std::string path = directory + kFernoFile;
    VESK_LOG_INFO("VESKFRWrapper::InitializeOpenSDK", "Init OpenSDK from path:%s", path.c_str());
    VESK_LOG_INFO("VESKFRWrapper::InitializeOpenSDK", "Start load FROpenSDK from path:%s",
                  path.c_str());
    os::DynamicLibrary library;
    // A bare name would be searched for elsewhere.
    if (directory.empty() || !library.Open(path)) {
        VESK_LOG_ERROR("VESKFRWrapper::InitializeOpenSDK", "Load frlogin.dll failed");
        return false;
    }
    VESK_LOG_INFO("VESKFRWrapper::InitializeOpenSDK", "Load frlogin.dll succeed");
    const auto init = library.Find<FrInit>("frlogin_init");
    if (init == nullptr) {
        // Requests find the library all the same.
        Publish(library, nullptr);
        VESK_LOG_ERROR("VESKFRWrapper::InitializeOpenSDK",
                       "Error! Not found function \"frlogin_init\"");
        return false;
    }
    VESK_LOG_INFO("VESKFRWrapper::InitializeOpenSDK", "Do \"frlogin_init\"");
    FrCallbackTable* table = VESKFRCallbacks::MakeTable();
    if (table == nullptr) {
        VESK_LOG_ERROR("VESKFRWrapper::InitializeOpenSDK", "No memory for the callback table");
        library.Close();
        return false;
    }
    const std::string logDirectory = directory + "Ferno";
    VESK_LOG_INFO("VESKFRWrapper::InitializeOpenSDK", "Ferno log path:%s", logDirectory.c_str());
    // Deliberate: whatever the call returns.
    init(table, logDirectory.c_str());
    Publish(library, table);
    const bool goesOn = start.Publish();
    VESK_LOG_INFO("VESKFRWrapper::InitializeOpenSDK", "Do \"frlogin_init\" done");
    if (!goesOn) {
        Depart();
    }
    return goesOn;
}

void VESKFRWrapper::UnInitializeOpenSDK() {
    VESK_LOG_INFO("VESKFRWrapper::UnInitializeOpenSDK", "UnInit OpenSDK");
    if (mLife.End() == VESKComponentLife::Stage::kRunning) {
        Depart();
    } else {
        VESK_LOG_INFO("VESKFRWrapper::UnInitializeOpenSDK",
                      "OpenSDK didn't init, no need to uninit");
    }
}

void VESKFRWrapper::Depart() {
    mLife.Depart({[this] { return Stop(); }, [this] { return Unload(); }});
}

bool VESKFRWrapper::Stop() {
    const auto uninit = Library().Find<FrUninit>("frlogin_uninit");
    if (uninit == nullptr) {
        VESK_LOG_ERROR("VESKFRWrapper::UnInitializeOpenSDK",
                       "Error! Not found function \"frlogin_uninit\"");
        return false;
    }
    VESK_LOG_INFO("VESKFRWrapper::UnInitializeOpenSDK", "Do \"frlogin_uninit\"");
    uninit();
    VESK_LOG_INFO("VESKFRWrapper::UnInitializeOpenSDK", "Do \"frlogin_uninit\" done");
    VESK_LOG_INFO("VESKFRWrapper::UnInitializeOpenSDK", "UnInit OpenSDK success");
    // Given up here; the file goes when the library has come to rest.
    VESK_LOG_INFO("VESKFRWrapper::UnInitializeOpenSDK", "Fress Ferno OpenSDK dll done");
    return true;
}

bool VESKFRWrapper::Unload() {
    os::DynamicLibrary library = Library();
    const bool gone = library.Close();
    FrCallbackTable* table = nullptr;
    {
        const std::lock_guard<VESKMutex> lock(mMutex);
        mLibrary = library;
        if (gone) { // or it may still know the table
            std::swap(table, mCallbacks);
        }
    }
    std::free(table);
    return gone;
}

bool VESKFRWrapper::Login(const std::string& appID, const std::string& preCode,
                          const std::string& scope) {
    VESK_LOG_INFO("VESKFRWrapper::Login", "Start Ferno login");
    const VESKComponentLife::Call call(mLife);
    const os::DynamicLibrary library = Library();
    if (!call || !library.IsOpen()) {
        VESK_LOG_ERROR("VESKFRWrapper::Login", "Load frlogin.dll failed");
        return false;
    }
    const auto request = library.Find<FrRequestQrCode>("frlogin_req_qrcode");
    if (request == nullptr) {
        VESK_LOG_ERROR("VESKFRWrapper::Login", "Error! Not found function \"frlogin_req_qrcode\"");
        return false;
    }
    VESK_LOG_INFO("VESKFRWrapper::Login", "Do \"frlogin_req_qrcode\"");
    const int result = request(appID.c_str(), appID.size(), preCode.c_str(), preCode.size(),
                               scope.c_str(), scope.size());
    VESK_LOG_INFO("VESKFRWrapper::Login", "Do \"frlogin_req_qrcode\" done, ret:%d", result);
    if (result != 0) {
        LoginNotifyRecord record =
            NotifyFailure("Ferno", "Get Ferno qrcode failed! Call \"frlogin_req_qrcode\" result:" +
                                       std::to_string(result));
        VESK_LOG_ERROR("VESKFRWrapper::Login", "%s", record.message.c_str());
        VESKChannelNotify* notify = mNotify;
        if (notify != nullptr) {
            notify->OnInnerLoginNotify(record);
        }
    }
    return true;
}

void VESKFRWrapper::GetLoginRecord() {
    VESK_LOG_INFO("VESKFRWrapper::GetLoginRecord", "Start get Ferno login record");
    const VESKComponentLife::Call call(mLife);
    const os::DynamicLibrary library = Library();
    if (!call || !library.IsOpen()) {
        VESK_LOG_ERROR("VESKFRWrapper::GetLoginRecord", "Load frlogin.dll failed");
        return;
    }
    const auto request = library.Find<FrRequest>("frlogin_req_client_tmp_token");
    if (request == nullptr) {
        VESK_LOG_ERROR("VESKFRWrapper::GetLoginRecord",
                       "Error! Not found function \"frlogin_req_client_tmp_token\"");
        return;
    }
    VESK_LOG_INFO("VESKFRWrapper::GetLoginRecord", "Do \"frlogin_req_client_tmp_token\"");
    const int result = request();
    VESK_LOG_INFO("VESKFRWrapper::GetLoginRecord",
                  "Do \"frlogin_req_client_tmp_token\" done, ret:%d", result);
    if (result != 0) {
        LoginNotifyRecord record = NotifyFailure(
            "Ferno",
            "Get Ferno login record failed! Call \"frlogin_req_client_tmp_token\" result:" +
                std::to_string(result));
        VESK_LOG_ERROR("VESKFRWrapper::GetLoginRecord", "%s", record.message.c_str());
        VESKChannelNotify* notify = mNotify;
        if (notify != nullptr) {
            notify->OnInnerGetLoginRecordNotify(record);
        }
    }
}

void VESKFRWrapper::Logout() {
    VESK_LOG_INFO("VESKFRWrapper::Logout", "Start Ferno logout");
    const VESKComponentLife::Call call(mLife);
    const os::DynamicLibrary library = Library();
    if (!call || !library.IsOpen()) {
        VESK_LOG_ERROR("VESKFRWrapper::Logout", "Load frlogin.dll failed");
        return;
    }
    const auto request = library.Find<FrRequest>("frlogin_req_logout");
    if (request == nullptr) {
        VESK_LOG_ERROR("VESKFRWrapper::Logout", "Error! Not found function \"frlogin_req_logout\"");
        return;
    }
    VESK_LOG_INFO("VESKFRWrapper::Logout", "Do \"frlogin_req_logout\"");
    const int result = request();
    VESK_LOG_INFO("VESKFRWrapper::Logout", "Do \"frlogin_req_logout\" done, ret:%d", result);
    if (result != 0) {
        VESK_LOG_ERROR("VESKFRWrapper::Logout",
                       "Ferno logout failed! Call \"frlogin_req_logout\" result:%d", result);
    }
}

} // namespace VESK
} // namespace Braxel
