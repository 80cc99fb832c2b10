#include "login/veskloginmanager.h"

#include "common/veskchannelfacts.h"
#include "common/veskdefine.h"
#include "config/veskconfigmanager.h"
#include "foundation/json/veskjsonreader.h"
#include "foundation/task/manager/vesktaskmanager.h"
#include "foundation/task/veskrefreshtokentask.h"
#include "foundation/tools/veskhttpparams.h"
#include "foundation/tools/vesknetworkutils.h"
#include "login/veskloginbodies.h"
#include "login/veskloginresults.h"
#include "login/veskresultsink.h"
#include "platformimpl/login/veskloginimpl.h"
#include "vesk/veskerror.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr const char* kOnPreCodeResp = "Braxel::VESK::VESKLoginManager::OnPreCodeResp";
constexpr const char* kOnLoginResp = "Braxel::VESK::VESKLoginManager::OnLoginResp";

/// What OnLoginResp needs of the channel answer that it belongs to.
struct LoginContext {
    InnerLoginPluginRet answer;
    std::string seqID;
};

/// Handles an answer to a login. One that there is no memory for is a failure of the transport to
/// the game, which would wait for ever otherwise.
template <typename Handle>
void OrOutOfMemory(const char* method, int32_t methodNameID, const std::string& seqID,
                   const Handle& handle) {
    constexpr int32_t kOutOfMemory = 27; // libcurl's code
    try {
        handle();
    } catch (...) {
        VESK_LOG_AT(kLogError, method, "[ %s ] exception inside an answer", seqID.c_str());
        VESKLoginManager::GetInstance()->Current().Reopen(seqID);
        try {
            DeliverNetworkError(kOutOfMemory, methodNameID, seqID);
        } catch (...) { // nor is there any for that
            VESKResultSink::LoginIsLost(seqID);
            throw;
        }
    }
}

void LoginChannel(const ExtendedLoginRequest& request) {
    if (!VESKLoginIMPL::GetInstance()->LoginChannel(request)) {
        VESKResultSink::ChannelIsSilent(request.seqID);
    }
}

} // namespace

VESKLoginManager::VESKLoginManager() : mLogouts(mHeld) {
    VESKInnerObserverHolder<InnerLoginPluginRet>::Register(kObserverIDPluginLogin,
                                                           &PluginLoginObserver);
    VESKInnerObserverHolder<InnerBaseRet>::Register(kObserverIDPluginLogout, &PluginLogoutObserver);
    VESKInnerObserverHolder<InnerLoginPluginRet>::Register(kObserverIDPluginRefresh,
                                                           &PluginRefreshObserver);
}

// ---- Login ----

void VESKLoginManager::Login(const LoginRequest& request, const std::string& permissions) {
    VESK_LOG_DEBUG("VESKLoginManager::Login", "[ %s ] Login", request.seqID.c_str());
    InnerLoginRet previous;
    GetLoginRet(previous);
    if (previous.channel.length() != 0) {
        // Without a sequence id the channel's answer is not reported to the game.
        ShortRequest logout;
        logout.methodNameID = kMethodNameLogout;
        logout.channel = previous.channel.c_str();
        Logout(logout, true);
    }
    ExtendedLoginRequest extended;
    static_cast<LoginRequest&>(extended) = request;
    mHeld.DropFor([&] {
        extended.order = mCurrent.Begin(request.seqID);
        return extended.order != 0;
    });
    if (extended.order != 0) {
        VESKResultSink::LoginHasBegun(request.seqID);
    }
    if (mCurrent.IsWithdrawn(request.seqID)) {
        return;
    }
    mNeedLoginObserve = true;
    extended.permissions = permissions;
    // Deliberate: any other channel is never answered.
    const VESKChannelKind kind = ChannelFacts(request.channel).kind;
    if (kind == VESKChannelKind::kMessenger) {
        GetLoginPreCode(extended);
    } else if (kind == VESKChannelKind::kDirect) {
        LoginChannel(extended);
    }
}

bool VESKLoginManager::IsCurrent(const std::string& seqID, const char* method) {
    std::string current;
    const bool isCurrent = mCurrent.Is(seqID, current);
    if (!isCurrent) {
        VESK_LOG_AT(kLogDebug, method, "[ %s ], mCurrentLoginSeqID is not equal %s", seqID.c_str(),
                    current.c_str());
    }
    return isCurrent;
}

void VESKLoginManager::GetLoginPreCode(const ExtendedLoginRequest& request) {
    VESK_LOG_DEBUG("VESKLoginManager::GetLoginPreCode", "[ %s ] GetLoginPreCode",
                   request.seqID.c_str());
    const std::string body = GetPreCodePostData(request);
    const std::string url = VESKNetworkUtils::GetURL(
        "auth/pcprecode", ChannelFacts(request.channel).preCodeChannelID, body, request.seqID);
    Post(url, &OnPreCodeResp, body, std::make_unique<ExtendedLoginRequest>(request), request.seqID);
}

std::string VESKLoginManager::GetPreCodePostData(const ExtendedLoginRequest& request) {
    VESK_LOG_DEBUG("VESKLoginManager::GetPreCodePostData", "[ %s ] GetPreCodePostData",
                   request.seqID.c_str());
    const std::string serialNumber =
        VESKLoginIMPL::GetInstance()->GetGenerateSerialNumber(request.channel);
    return VESKLoginBodies::PreCode(request.channel, serialNumber);
}

void VESKLoginManager::OnPreCodeResp(int32_t /*reqSeq*/, int32_t result, const std::string& body,
                                     void* context) {
    const std::unique_ptr<ExtendedLoginRequest> request(
        static_cast<ExtendedLoginRequest*>(context));
    VESK_LOG_INFO("VESKLoginManager::OnPreCodeResp", "[ %s ] OnPreCodeResp ret:%d, respBody:%s",
                  request->seqID.c_str(), result, body.c_str());
    OrOutOfMemory(kOnPreCodeResp, request->methodNameID, request->seqID, [&] {
        if (result != 0) {
            DeliverNetworkError(result, request->methodNameID, request->seqID);
        } else {
            GetInstance()->HandlePreCode(*request, body);
        }
    });
}

void VESKLoginManager::HandlePreCode(ExtendedLoginRequest& request, const std::string& body) {
    VESKJsonReader reader;
    reader.init(body);
    int32_t backendCode = -1;
    std::string message;
    if (!reader.hasCursor()) {
        VESK_LOG_ERROR("VESKLoginManager::OnPreCodeResp", "null VESKJsonReader");
    } else {
        reader.read("ret", backendCode);
        reader.read("precode", request.preCode);
        reader.read("msg", message);
    }
    if (backendCode == 0 && !request.preCode.empty()) {
        // The channel has one login at a time: that of a newer one must not be taken over.
        if (IsCurrent(request.seqID, kOnPreCodeResp)) {
            LoginChannel(request);
        }
        return;
    }
    if (backendCode == 0) {
        VESK_LOG_ERROR("VESKLoginManager::OnPreCodeResp", "No preCode! msg:%s", message.c_str());
    } else {
        VESK_LOG_ERROR("VESKLoginManager::OnPreCodeResp", "Get preCode failed! msg:%s",
                       message.c_str());
    }
    InnerLoginRet ret(VESKError::SERVER_ERROR);
    ret.retMsg = message.c_str();
    ret.thirdCode = backendCode;
    ret.methodNameID = request.methodNameID;
    DeliverLoginRet(ret, request.seqID);
}

void VESKLoginManager::PluginLoginObserver(const InnerLoginPluginRet& answer, const char* seqID) {
    VESK_LOG_DEBUG("VESKLoginManager::PluginLoginObserver", "[ %s ], %s", seqID,
                   answer.ToJson().c_str());
    VESKLoginManager* manager = GetInstance();
    if (answer.methodNameID == kMethodNameLogin) {
        VESK_LOG_DEBUG("VESKLoginManager::PluginLoginObserver", "[ %s ], login in", seqID);
        if (!manager->IsCurrent(seqID, "Braxel::VESK::VESKLoginManager::PluginLoginObserver")) {
            return;
        }
    }
    if (!manager->mCurrent.IsWithdrawn(seqID)) {
        manager->PostLogin(answer, seqID);
    }
}

void VESKLoginManager::PostLogin(const InnerLoginPluginRet& answer, const std::string& seqID) {
    const std::string body = VESKLoginBodies::Login(answer.channelInfo);
    const std::string url = VESKNetworkUtils::GetURL("auth/login", answer.channelID, body, seqID);
    VESK_LOG_DEBUG("VESKLoginManager::PluginLoginObserver", "[ %s ] %s url: %s postData : %s",
                   seqID.c_str(), "Login", url.c_str(), body.c_str());
    Post(url, &OnLoginResp, body, std::make_unique<LoginContext>(LoginContext{answer, seqID}),
         seqID);
}

void VESKLoginManager::OnLoginResp(int32_t /*reqSeq*/, int32_t result, const std::string& body,
                                   void* context) {
    const std::unique_ptr<LoginContext> login(static_cast<LoginContext*>(context));
    const std::string& seqID = login->seqID;
    VESK_LOG_DEBUG("VESKLoginManager::OnLoginResp", "[ %s ], %s", seqID.c_str(), body.c_str());
    OrOutOfMemory(kOnLoginResp, login->answer.methodNameID, seqID,
                  [&] { GetInstance()->HandleLogin(login->answer, result, body, seqID); });
}

void VESKLoginManager::HandleLogin(const InnerLoginPluginRet& answer, int32_t result,
                                   const std::string& body, const std::string& seqID) {
    InnerLoginRet ret;
    ConvertLoginRet(ret, result, body, seqID);
    ret.methodNameID = answer.methodNameID;
    ret.channel = answer.channel.c_str();
    ret.channelID = answer.channelID;
    if (ret.channelInfo.length() == 0) {
        ret.channelInfo = answer.channelInfo.c_str();
    }
    if (ret.retCode == VESKError::NEED_REALNAME) {
        const auto pending = std::make_shared<InnerLoginRet>(ret);
        mCurrent.IfIs(seqID, [&] { mPendingLoginRet = pending; });
    } else if (ret.retCode == VESKError::SUCCESS && !HandleLoginSuccess(ret, seqID, body)) {
        return;
    }
    if (mNeedLoginObserve) {
        VESK_LOG_DEBUG("VESKLoginManager::OnLoginResp",
                       "[ %s ], mNeedLoginObserve is true, do callback", seqID.c_str());
        DeliverLoginRet(ret, seqID);
    } else {
        VESK_LOG_DEBUG("VESKLoginManager::OnLoginResp",
                       "[ %s ], mNeedLoginObserve is false, do not callback", seqID.c_str());
    }
}

/// @return false when another answer to this login is stored: the game hears of that one.
bool VESKLoginManager::HandleLoginSuccess(InnerLoginRet& ret, const std::string& seqID,
                                          const std::string& body) {
    if (ret.methodNameID == kMethodNameBind) {
        UpdateLoginRet(body.c_str(), ret);
        ret.methodNameID = kMethodNameBind;
        VESK_LOG_ERROR("VESKLoginManager::OnLoginResp",
                       "methodNameID has been reset for kMethodNameBind");
        return true;
    }
    VESKResultSink::BeforeLoginIsStored();
    if (!IsCurrent(seqID, kOnLoginResp)) {
        EndWithdrawn(ret, seqID);
        return true; // nobody waits for it
    }
    // One that came too late must neither sign the old player in nor cost the newer one's record.
    if (!mHeld.SaveLogin(ret, [&] { return mCurrent.Close(seqID); })) {
        EndWithdrawn(ret, seqID);
        return !IsCurrent(seqID, kOnLoginResp); // overtaken just now: nobody waits for it either
    }
    TimerRefreshToken(seqID, ret.channel.c_str());
    VESK_LOG_DEBUG("VESKLoginManager::OnLoginResp", "loginNotifyObservers count: %i",
                   static_cast<int>(mLoginNotifyObservers.size()));
    for (const NotifyObserver observer : mLoginNotifyObservers) {
        observer(ret);
    }
    // Deliberate: nothing but the configuration is touched, whatever the text says.
    VESK_LOG_DEBUG("VESKLoginManager::OnLoginResp", "[ %s ]VESKConfig: Add UpdateConfigWithTimer",
                   seqID.c_str());
    VESKConfigManager::GetInstance();
    return true;
}

/// The backend has logged a player in whom nobody wants any more.
void VESKLoginManager::EndWithdrawn(const InnerLoginRet& ret, const std::string& seqID) {
    if (mCurrent.TakeLogOut(seqID)) {
        VESK_LOG_INFO("VESKLoginManager::EndWithdrawn",
                      "[ %s ], logged in after it was cancelled, logs out again", seqID.c_str());
        VESKLogouts::LogOutAtBackend(ret, seqID);
    }
}

bool VESKLoginManager::checkLoginNotify(const std::string& seqID, bool isSuccess) {
    if (seqID.empty()) {
        VESK_LOG_DEBUG("VESKLoginManager::checkLoginNotify", "seqID is empty");
        return false;
    }
    VESK_LOG_DEBUG("VESKLoginManager::checkLoginNotify", "[ %s] check seqID", seqID.c_str());
    if (mCurrent.End(seqID, isSuccess)) {
        return true;
    }
    VESK_LOG_DEBUG("VESKLoginManager::checkLoginNotify", "seqID is not equal currentSeqID");
    return false;
}

void VESKLoginManager::AutoLogin(const ShortRequest& request) {
    const std::string& seqID = request.seqID;
    VESK_LOG_DEBUG("VESKLoginManager::AutoLogin", "[ %s ], begin autologin", seqID.c_str());
    const char* const onTestOnly = "Auto login only support on VESK test environment";
    const char* const onKZOnly = "Auto login only support on KZ channel";
    if (!VESKLoginBodies::AllowsAutoLogin(
            VESKConfigManager::GetInstance()->Get<const char*>("VESK_URL"))) {
        VESK_LOG_ERROR("VESKLoginManager::AutoLogin", "[ %s ], %s", seqID.c_str(), onTestOnly);
        DeliverLoginFailure(VESKError::AUTOLOGIN_NOT_ALLOWED, onTestOnly, request.methodNameID,
                            seqID);
        return;
    }
    InnerLoginRet ret;
    GetLoginRet(ret);
    if (ret.channel.length() == 0) {
        VESK_LOG_DEBUG("VESKLoginManager::AutoLogin", "[ %s ], local loginret invalid",
                       seqID.c_str());
        ret.methodNameID = request.methodNameID;
        DeliverLoginRet(ret, seqID);
        return;
    }
    if (!ChannelFacts(ret.channel.c_str()).allowsAutoLogin) {
        VESK_LOG_DEBUG("VESKLoginManager::AutoLogin", "[ %s ], %s", seqID.c_str(), onKZOnly);
        DeliverLoginFailure(VESKError::AUTOLOGIN_NOT_ALLOWED, onKZOnly, request.methodNameID,
                            seqID);
        return;
    }
    AutoLoginRequest autoLogin;
    static_cast<ShortRequest&>(autoLogin) = request;
    // Only now: a refused automatic login does not end a login that is running.
    autoLogin.order = mCurrent.Begin(seqID);
    VESKResultSink::LoginHasBegun(seqID);
    autoLogin.channel = ret.channel.c_str();
    autoLogin.uid = ret.uid.c_str();
    VESKLoginIMPL::GetInstance()->PluginAutoLogin(autoLogin);
}

// ---- Token refresh ----

void VESKLoginManager::TimerRefreshToken(const std::string& seqID, const std::string& channel) {
    if (ChannelFacts(channel).kind == VESKChannelKind::kGuest) {
        VESK_LOG_DEBUG("VESKLoginManager::TimerRefreshToken",
                       "[ %s ] channel %s  not need to refresh token", seqID.c_str(),
                       channel.c_str());
        return;
    }
    std::unique_ptr<VESKTask> task = MakeRefreshTask();
    VESK_LOG_DEBUG("VESKLoginManager::TimerRefreshToken",
                   "[ %s ] channel %s has been set to refresh token", seqID.c_str(),
                   channel.c_str());
    VESKTaskManager::GetInstance()->AddTask(task.release());
    VESKTaskManager::GetInstance()->StartTimer();
}

std::unique_ptr<VESKTask> VESKLoginManager::MakeRefreshTask() {
    const VESKRefreshTokenTask::Login login = {
        [](InnerLoginRet& ret) { return GetInstance()->GetLoginRet(ret); },
        [](const InnerLoginRet& ret) {
            GetInstance()->NoteRefresh();
            VESKLoginIMPL::GetInstance()->RefreshToken(ret);
        }};
    return std::make_unique<VESKRefreshTokenTask>(login);
}

void VESKLoginManager::PluginRefreshObserver(const InnerLoginPluginRet& answer,
                                             const char* /*seqID*/) {
    if (!answer.channelInfo.empty()) {
        GetInstance()->mHeld.Refresh(answer);
    }
}

// ---- Logout ----

void VESKLoginManager::PluginLogoutObserver(const InnerBaseRet& answer, const char* seqID) {
    GetInstance()->mLogouts.OnChannelAnswer(answer, seqID);
}

void VESKLoginManager::UnInstallPlatformPlugins() {
    VESK_LOG_DEBUG("VESKLoginManager::UnInstallPlatformPlugins", "UnInstallPlatformPlugins");
    VESKTaskManager::GetInstance()->Shutdown();
    VESKLoginIMPL::GetInstance()->UnInstallPlugins();
}

} // namespace VESK
} // namespace Braxel
