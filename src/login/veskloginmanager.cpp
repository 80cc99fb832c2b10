#include "login/veskloginmanager.h"

#include "common/veskchannelfacts.h"
#include "common/veskdefine.h"
#include "config/veskconfigmanager.h"
#include "foundation/json/veskjsonreader.h"
#include "foundation/json/veskjsonwriter.h"
#include "foundation/task/manager/vesktaskmanager.h"
#include "foundation/task/veskrefreshtokentask.h"
#include "foundation/tools/veskhttpparams.h"
#include "foundation/tools/vesknetworkutils.h"
#include "login/veskloginbodies.h"
#include "login/veskloginresults.h"
#include "login/vesklogoutret.h"
#include "module/veskmutex.h"
#include "platformimpl/foundation/file/veskfileutils.h"
#include "platformimpl/foundation/os/clock.h"
#include "platformimpl/login/veskloginimpl.h"
#include "vesk/veskerror.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr const char* kDeviceCacheFile = "upra_login.txt";
constexpr int32_t kStateNotified = 2;
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
        VESKLoginManager::GetInstance()->ReopenLogin(seqID);
        DeliverNetworkError(kOutOfMemory, methodNameID, seqID);
    }
}

bool IsJson(const std::string& text) {
    VESKJsonReader reader;
    reader.init(text);
    return !reader.parseFailed();
}

} // namespace

VESKLoginManager::VESKLoginManager() : mLoginRet(std::make_shared<InnerLoginRet>()) {
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
    {
        // In one, or the older of two logins would drop what the newer has brought already.
        const std::lock_guard<VESKMutex> lock(mStoreMutex);
        extended.order = BeginLogin(request.seqID);
        DropLogin();
    }
    mNeedLoginObserve = true;
    extended.permissions = permissions;
    // Deliberate: any other channel is never answered.
    const VESKChannelKind kind = ChannelFacts(request.channel).kind;
    if (kind == VESKChannelKind::kMessenger) {
        GetLoginPreCode(extended);
    } else if (kind == VESKChannelKind::kDirect) {
        VESKLoginIMPL::GetInstance()->LoginChannel(extended);
    }
}

uint64_t VESKLoginManager::BeginLogin(const std::string& seqID) {
    const std::lock_guard<VESKMutex> lock(mLoginMutex);
    mCurrentLoginSeqID = seqID;
    return ++mLoginCount;
}

bool VESKLoginManager::IsCurrent(const std::string& seqID, const char* method) {
    std::string current;
    {
        const std::lock_guard<VESKMutex> lock(mLoginMutex);
        current = mCurrentLoginSeqID;
    }
    if (current != seqID) {
        VESK_LOG_AT(kLogDebug, method, "[ %s ], mCurrentLoginSeqID is not equal %s", seqID.c_str(),
                    current.c_str());
    }
    return current == seqID;
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
            VESKLoginIMPL::GetInstance()->LoginChannel(request);
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
    manager->PostLogin(answer, seqID);
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
        const std::lock_guard<VESKMutex> lock(mLoginMutex);
        if (seqID == mCurrentLoginSeqID) {
            mPendingLoginRet = pending;
        }
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
    if (!IsCurrent(seqID, kOnLoginResp)) {
        return true; // nobody waits for it
    }
    if (!StoreCurrentLogin(ret, seqID)) {
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

/// A login has one success, which is stored before the game hears of it. Whatever else answers the
/// login meanwhile must not be heard instead.
bool VESKLoginManager::CloseLogin(const std::string& seqID) {
    const std::lock_guard<VESKMutex> lock(mLoginMutex);
    if (seqID != mCurrentLoginSeqID || seqID == mStoredSeqID) {
        return false;
    }
    mStoredSeqID = seqID;
    return true;
}

void VESKLoginManager::ReopenLogin(const std::string& seqID) {
    const std::lock_guard<VESKMutex> lock(mLoginMutex);
    if (seqID == mStoredSeqID) {
        mStoredSeqID.clear();
    }
}

bool VESKLoginManager::checkLoginNotify(const std::string& seqID, bool isSuccess) {
    if (seqID.empty()) {
        VESK_LOG_DEBUG("VESKLoginManager::checkLoginNotify", "seqID is empty");
        return false;
    }
    VESK_LOG_DEBUG("VESKLoginManager::checkLoginNotify", "[ %s] check seqID", seqID.c_str());
    {
        const std::lock_guard<VESKMutex> lock(mLoginMutex);
        if (seqID == mCurrentLoginSeqID && (isSuccess || seqID != mStoredSeqID)) {
            mCurrentLoginSeqID.clear();
            mLoginState = kStateNotified;
            return true;
        }
    }
    VESK_LOG_DEBUG("VESKLoginManager::checkLoginNotify", "seqID is not equal currentSeqID");
    return false;
}

void VESKLoginManager::AutoLogin(const ShortRequest& request) {
    const std::string& seqID = request.seqID;
    VESK_LOG_DEBUG("VESKLoginManager::AutoLogin", "[ %s ], begin autologin", seqID.c_str());
    {
        const std::lock_guard<VESKMutex> lock(mLoginMutex);
        mAutoLoginSeqID = seqID;
    }
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
    autoLogin.order = BeginLogin(seqID);
    autoLogin.channel = ret.channel.c_str();
    autoLogin.uid = ret.uid.c_str();
    VESKLoginIMPL::GetInstance()->PluginAutoLogin(autoLogin);
}

// ---- The login that is held ----

std::shared_ptr<const InnerLoginRet> VESKLoginManager::HeldLogin() {
    const std::lock_guard<VESKMutex> lock(mLoginRetMutex);
    return mLoginRet;
}

bool VESKLoginManager::isLoginRetEmpty() {
    const std::shared_ptr<const InnerLoginRet> held = HeldLogin();
    return held->openid.length() == 0 || held->token.length() == 0;
}

bool VESKLoginManager::GetLoginRet(InnerLoginRet& out) {
    VESK_LOG_DEBUG("VESKLoginManager::GetLoginRet", "Start get login ret");
    if (isLoginRetEmpty()) {
        VESK_LOG_DEBUG("VESKLoginManager::GetLoginRet", "get LoginRet from device cache");
        return ReadDeviceCache(out);
    }
    out = *HeldLogin();
    VESK_LOG_DEBUG("VESKLoginManager::GetLoginRet", "get memory cache current login ret ");
    out.methodNameID = kMethodNameGetLoginRet;
    return CheckExpiry(out);
}

bool VESKLoginManager::CheckExpiry(InnerLoginRet& out) {
    if (out.tokenExpire == 0) {
        VESK_LOG_DEBUG("VESKLoginManager::GetLoginRet", "tokenExpire == 0");
        return true;
    }
    // Deliberate: the clock is taken as 32 bits.
    const int64_t now = static_cast<int32_t>(os::UnixSeconds());
    if (out.tokenExpire < now) {
        // Deliberate: an expired login is found all the same.
        VESK_LOG_DEBUG("VESKLoginManager::GetLoginRet", "token expire");
        out.methodNameID = kMethodNameGetLoginRet;
        out.retCode = VESKError::TOKEN_EXPIRED;
        out.retMsg = "token expire";
        return true;
    }
    if (out.retCode != VESKError::SUCCESS) {
        VESK_LOG_DEBUG("VESKLoginManager::GetLoginRet", "retCode != VESKError::SUCCESS");
        return false;
    }
    VESK_LOG_DEBUG("VESKLoginManager::GetLoginRet", "Get login ret done");
    return true;
}

bool VESKLoginManager::ReadDeviceCache(InnerLoginRet& out) {
    // Deliberate: a fixed width, that of KZ's name, whatever channel wrote the file.
    constexpr size_t kChannelWidth = 2;
    constexpr size_t kLongestIgnored = 3;
    std::string content;
    {
        const std::lock_guard<VESKMutex> lock(mStoreMutex);
        content = VESKFileUtils::GetInstance()->ReadFile(kDeviceCacheFile);
    }
    if (content.empty()) {
        VESK_LOG_DEBUG("VESKLoginManager::GetLoginRet", "empty login cache");
        out = InnerLoginRet(VESKError::NO_STORED_LOGIN);
        out.methodNameID = kMethodNameGetLoginRet;
    } else if (content.size() > kLongestIgnored) {
        out.channel = content.substr(0, kChannelWidth).c_str();
        out.uid = content.substr(kChannelWidth).c_str();
    }
    return false;
}

bool VESKLoginManager::SaveLoginRet(const InnerLoginRet& ret) {
    const std::lock_guard<VESKMutex> lock(mStoreMutex);
    ++mHeldLogin;
    return StoreLogin(ret);
}

/// A login that came too late must neither sign the old player in nor cost the newer one's record.
/// @return whether it is the login in progress, stored or not, and the first answer to that.
bool VESKLoginManager::StoreCurrentLogin(const InnerLoginRet& ret, const std::string& seqID) {
    const std::lock_guard<VESKMutex> lock(mStoreMutex);
    if (!CloseLogin(seqID)) {
        return false;
    }
    ++mHeldLogin;
    ++mStoredLogins;
    StoreLogin(ret);
    return true;
}

/// Stores what was made from the record of @p generation, unless that is not the held one any more.
bool VESKLoginManager::StoreChanged(const InnerLoginRet& ret, uint64_t generation) {
    const std::lock_guard<VESKMutex> lock(mStoreMutex);
    if (generation != mStoreGeneration) {
        return false;
    }
    StoreLogin(ret);
    return true;
}

uint64_t VESKLoginManager::StoreGeneration() {
    const std::lock_guard<VESKMutex> lock(mStoreMutex);
    return mStoreGeneration;
}

bool VESKLoginManager::StoreLogin(const InnerLoginRet& ret) {
    VESK_LOG_DEBUG("VESKLoginManager::SaveLoginRet", "Start save login ret");
    const std::string content = std::string(ret.channel.c_str()) + ret.uid.c_str();
    if (!VESKFileUtils::GetInstance()->WriteFile(kDeviceCacheFile, content)) {
        VESK_LOG_ERROR("VESKLoginManager::SaveLoginRet", "save LoginRet fail");
        return false;
    }
    auto saved = std::make_shared<const InnerLoginRet>(ret);
    ++mStoreGeneration;
    {
        const std::lock_guard<VESKMutex> lock(mLoginRetMutex);
        mLoginRet.swap(saved);
    }
    VESK_LOG_DEBUG("VESKLoginManager::SaveLoginRet", "save LoginRet success");
    return true;
}

bool VESKLoginManager::DeleteLoginRet() {
    const std::lock_guard<VESKMutex> lock(mStoreMutex);
    return DropLogin();
}

uint64_t VESKLoginManager::StoredLogins() {
    const std::lock_guard<VESKMutex> lock(mStoreMutex);
    return mStoredLogins;
}

/// Drops the login for which a channel has logged out, but none that has followed it meanwhile.
void VESKLoginManager::DropLoginOf(uint64_t storedLogins) {
    const std::lock_guard<VESKMutex> lock(mStoreMutex);
    if (storedLogins == mStoredLogins) {
        DropLogin();
    }
}

bool VESKLoginManager::DropLogin() {
    ++mStoreGeneration;
    ++mHeldLogin;
    const auto reset = std::make_shared<InnerLoginRet>(*HeldLogin());
    reset->resetLoginRet();
    {
        const std::lock_guard<VESKMutex> lock(mLoginRetMutex);
        mLoginRet = reset;
    }
    VESK_LOG_DEBUG("VESKLoginManager::DeleteLoginRet", "login ret is empty:%d",
                   isLoginRetEmpty() ? 1 : 0);
    return VESKFileUtils::GetInstance()->RemoveFile(kDeviceCacheFile);
}

void VESKLoginManager::UpdateLoginRet(const String& loginData, InnerLoginRet& out) {
    if (!IsJson(loginData.c_str())) {
        VESK_LOG_ERROR("VESKLoginManager::UpdateLoginRet", "invalid logindata :%s",
                       loginData.c_str());
        return;
    }
    const std::string seqID = out.seq.c_str();
    VESK_LOG_DEBUG("VESKLoginManager::UpdateLoginRet", "[ %s ], %s", seqID.c_str(),
                   loginData.c_str());
    if (out.retCode != VESKError::SUCCESS) {
        VESK_LOG_ERROR("VESKLoginManager::UpdateLoginRet", "[ %s ], invalid loginRet",
                       seqID.c_str());
        return;
    }
    const uint64_t generation = StoreGeneration();
    InnerLoginRet stored;
    if (!GetLoginRet(stored)) {
        VESK_LOG_ERROR("VESKLoginManager::UpdateLoginRet",
                       "[ %s ], getLoginRet failed, ignore this operate", seqID.c_str());
        return;
    }
    stored.retMsg = VESKUtils::GetRetMsg(VESKError::SUCCESS).c_str();
    stored.seq = "";
    std::string target = stored.ToJson();
    VESK_LOG_DEBUG("VESKLoginManager::UpdateLoginRet", "targetJson before merge : %s",
                   target.c_str());
    VESKJsonWriter::merge(target, loginData.c_str());
    VESK_LOG_DEBUG("VESKLoginManager::UpdateLoginRet", "targetJson after merge : %s",
                   target.c_str());
    if (!IsJson(target)) {
        VESK_LOG_ERROR("VESKLoginManager::UpdateLoginRet", "load json fail %s", target.c_str());
        return;
    }
    VESK_LOG_DEBUG("VESKLoginManager::UpdateLoginRet", "save target result ok");
    stored.FromJson(target);
    if (StoreChanged(stored, generation)) {
        out = stored;
    }
}

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

void VESKLoginManager::NoteRefresh() {
    const std::lock_guard<VESKMutex> lock(mStoreMutex);
    mRefreshedLogin = mHeldLogin;
}

void VESKLoginManager::PluginRefreshObserver(const InnerLoginPluginRet& answer,
                                             const char* /*seqID*/) {
    if (!answer.channelInfo.empty()) {
        GetInstance()->RefreshLogin(answer);
    }
}

void VESKLoginManager::RefreshLogin(const InnerLoginPluginRet& answer) {
    std::string token;
    const int32_t lifetime =
        VESKLoginBodies::ReadChannelToken(answer.channel, answer.channelInfo, token);
    if (lifetime == 0) {
        return;
    }
    const int64_t now = os::UnixSeconds();
    uint64_t generation = 0;
    bool isOurs = false;
    {
        const std::lock_guard<VESKMutex> lock(mStoreMutex);
        generation = mStoreGeneration;
        isOurs = mRefreshedLogin == 0 || mRefreshedLogin == mHeldLogin;
        mRefreshedLogin = 0;
    }
    InnerLoginRet ret;
    GetLoginRet(ret);
    // It may be the answer to what another login has asked, or nothing may be held any more.
    if (!isOurs || ret.openid.length() == 0 || answer.channel != ret.channel.c_str()) {
        VESK_LOG_DEBUG("VESKLoginManager::PluginRefreshObserver",
                       "token of channel %s is not for the held login", answer.channel.c_str());
        return;
    }
    ret.token = token.c_str();
    ret.tokenExpire = now + lifetime;
    ret.channelInfo =
        VESKLoginBodies::RefreshedChannelInfo(answer.channel, ret.openid.c_str(), token).c_str();
    StoreChanged(ret, generation);
}

// ---- Logout ----

void VESKLoginManager::Logout(const ShortRequest& request, bool channelOnly) {
    const std::string& seqID = request.seqID;
    VESK_LOG_DEBUG("VESKLoginManager::Logout", "[ %s ], logout", seqID.c_str());
    const uint64_t storedLogins = StoredLogins();
    InnerLoginRet stored;
    if (!GetLoginRet(stored) && stored.retCode != VESKError::TOKEN_EXPIRED) {
        VESK_LOG_ERROR("VESKLoginManager::Logout", "[ %s ], get loginRet fail", seqID.c_str());
        DeliverLogoutRet(InnerBaseRet(stored.retCode), kObserverIDBaseRet, seqID);
        return;
    }
    LogoutRequest logout;
    static_cast<ShortRequest&>(logout) = request;
    logout.channelOnly = channelOnly;
    if (logout.channel.empty()) {
        logout.channel = stored.channel.c_str();
    }
    VESK_LOG_DEBUG("VESKLoginManager::Logout", "[ %s ] logout %s", seqID.c_str(),
                   logout.channel.c_str());
    KeepLogout(seqID, channelOnly, storedLogins);
    if (ChannelFacts(logout.channel).kind == VESKChannelKind::kGuest) {
        DeliverLogoutRet(InnerBaseRet(VESKError::SUCCESS), kObserverIDPluginLogout, seqID);
    } else if (!VESKLoginIMPL::GetInstance()->Logout(logout)) {
        TakeLogout(seqID); // nobody will answer
    }
    // A channel may take its time: by now the task may be that of a login which has followed.
    if (storedLogins == StoredLogins()) {
        VESKTaskManager::GetInstance()->RemoveTask(VESKRefreshTokenTask::kTaskName);
        VESKTaskManager::GetInstance()->StopTimer();
    }
}

/// Before the channel is asked: it may answer at once.
void VESKLoginManager::KeepLogout(const std::string& seqID, bool channelOnly,
                                  uint64_t storedLogins) {
    if (!seqID.empty()) { // its answer asks for nothing
        PendingLogout logout{VESKLoginBodies::LogoutParams(channelOnly), storedLogins};
        const std::lock_guard<VESKMutex> lock(mPendingLogoutMutex);
        std::swap(mPendingLogouts[seqID], logout);
    }
}

VESKLoginManager::PendingLogout VESKLoginManager::TakeLogout(const std::string& seqID) {
    PendingLogout logout{"", StoredLogins()};
    const std::lock_guard<VESKMutex> lock(mPendingLogoutMutex);
    const auto found = mPendingLogouts.find(seqID);
    if (found != mPendingLogouts.end()) {
        logout = std::move(found->second);
        mPendingLogouts.erase(found);
    }
    return logout;
}

void VESKLoginManager::PluginLogoutObserver(const InnerBaseRet& answer, const char* seqID) {
    VESK_LOG_DEBUG("VESKLoginManager::PluginLogoutObserver", "[ %s ], %s", seqID,
                   answer.ToJson().c_str());
    if (*seqID == '\0') {
        VESK_LOG_INFO("VESKLoginManager::PluginLogoutObserver",
                      "channel logout done, no seqID no need to callback");
        return;
    }
    VESKLoginManager* manager = GetInstance();
    const PendingLogout logout = manager->TakeLogout(seqID);
    const bool channelOnly = VESKLoginBodies::ReadChannelOnly(logout.params);
    VESK_LOG_DEBUG("VESKLoginManager::PluginLogoutObserver",
                   "[ %s ], param JSON %s, channelOnly %s", seqID, logout.params.c_str(),
                   channelOnly ? "true" : "false");
    if (answer.retCode != VESKError::SUCCESS) {
        VESK_LOG_ERROR("VESKLoginManager::PluginLogoutObserver", "[ %s ], logout plugin failed",
                       seqID);
    } else {
        InnerLoginRet stored;
        manager->GetLoginRet(stored);
        if (!channelOnly) {
            manager->SendLogoutRequest(seqID, logout.storedLogins);
            manager->DropLoginOf(logout.storedLogins);
            VESK_LOG_DEBUG("VESKLoginManager::PluginLogoutObserver",
                           "logoutNotifyObservers count: %i",
                           static_cast<int>(manager->mLogoutNotifyObservers.size()));
            for (const NotifyObserver observer : manager->mLogoutNotifyObservers) {
                observer(stored);
            }
        }
    }
    InnerBaseRet ret(answer.retCode);
    ret.thirdCode = answer.thirdCode;
    ret.thirdMsg = answer.thirdMsg;
    DeliverLogoutRet(ret, kObserverIDBaseRet, seqID);
}

void VESKLoginManager::SendLogoutRequest(const std::string& seqID, uint64_t storedLogins) {
    VESK_LOG_DEBUG("VESKLoginManager::SendLogoutRequest", "[ %s ] sendLogoutRequest",
                   seqID.c_str());
    InnerLoginRet stored;
    GetLoginRet(stored);
    if (stored.openid.length() == 0 || stored.token.length() == 0 ||
        storedLogins != StoredLogins()) {
        VESK_LOG_DEBUG("VESKLoginManager::SendLogoutRequest", "[ %s ], invalid loginret",
                       seqID.c_str());
        return;
    }
    const std::string body = VESKLoginBodies::Logout(stored.token.c_str(), stored.openid.c_str());
    const std::string url = VESKNetworkUtils::GetURL("auth/logout", stored.channelID, body, seqID);
    Post(url, &OnLogoutResp, body, std::make_unique<std::string>(seqID), seqID);
}

void VESKLoginManager::OnLogoutResp(int32_t /*reqSeq*/, int32_t result, const std::string& body,
                                    void* context) {
    const std::unique_ptr<std::string> seqID(static_cast<std::string*>(context));
    VESK_LOG_DEBUG("VESKLoginManager::OnLogoutResp", "[ %s ], %s", seqID->c_str(), body.c_str());
    VESKLogoutRet ret;
    VESKNetworkUtils::HandleNetworkResponse(result, body, ret, *seqID);
    if (ret.retCode == VESKError::SUCCESS) {
        VESK_LOG_DEBUG("VESKLoginManager::OnLogoutResp", "[ %s ], logout request success",
                       seqID->c_str());
    }
}

void VESKLoginManager::UnInstallPlatformPlugins() {
    VESK_LOG_DEBUG("VESKLoginManager::UnInstallPlatformPlugins", "UnInstallPlatformPlugins");
    VESKTaskManager::GetInstance()->Shutdown();
    VESKLoginIMPL::GetInstance()->UnInstallPlugins();
}

} // namespace VESK
} // namespace Braxel
