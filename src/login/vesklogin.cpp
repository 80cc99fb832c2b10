#include "vesk/vesklogin.h"

#include <atomic>
#include <string>

#include "common/vesk.h"
#include "common/veskdefine.h"
#include "common/veskrequests.h"
#include "foundation/http/veskhttpmanager.h"
#include "foundation/json/veskjsonmanager.h"
#include "foundation/lifecycle/veskcallgate.h"
#include "foundation/log/vesklogger.h"
#include "foundation/tools/md5.h"
#include "login/veskguarded.h"
#include "login/veskloginmanager.h"
#include "login/veskoperations.h"
#include "login/veskresultsink.h"
#include "module/veskmodule.h"
#include "module/vesksingleton.h"

namespace Braxel {
namespace VESK {

namespace {

std::atomic<VESKLoginObserver*> gObserver{nullptr};
std::atomic<bool> gEnded{false};

/// Closed by UnInstall: from then on nothing reaches the game, whatever is still under way.
VESKCallGate& DeliveryGate() {
    return *VESKSingleton<VESKCallGate>::GetInstance();
}

/// Calls the game: its exceptions must not reach the thread that delivers.
/// @param method who calls, fully qualified
template <typename Call>
void NotifyUser(const char* method, const Call& call) {
    try {
        call();
    } catch (...) {
        VESK_LOG_AT(kLogError, method, "exception out of the observer");
    }
}

void LoginRetObserver(const InnerLoginRet& inner, const char* seqID) {
    const VESKCallGate::Pass pass(DeliveryGate());
    VESKLoginObserver* observer = pass ? gObserver.load() : nullptr;
    VESKResultSink* sink = pass ? VESKResultSink::Get() : nullptr;
    if (observer != nullptr || sink != nullptr) {
        VESK_LOG_DEBUG("VESKLogin::LoginRetObserver",
                       "[ %s ] convert InnerLoginRet to VESKLoginRet start", seqID);
        const VESKLoginRet ret = ToPublic(inner);
        VESK_LOG_DEBUG("VESKLogin::LoginRetObserver",
                       "[ %s ] convert InnerLoginRet to VESKLoginRet finish then will notify user",
                       seqID);
        VESK_LOG_DEBUG("VESKLogin::LoginRetObserver", "[ %s ] method id :%d", seqID,
                       ret.methodNameID);
        if (ret.methodNameID != kMethodNameLogin ||
            VESKLoginManager::GetInstance()->checkLoginNotify(seqID, inner.retCode ==
                                                                         VESKError::SUCCESS)) {
            NotifyUser("Braxel::VESK::VESKLogin::LoginRetObserver", [&] {
                if ((sink == nullptr || !sink->OnLogin(ret, seqID)) && observer != nullptr) {
                    observer->OnLoginRetNotify(ret);
                }
            });
            return;
        }
    }
    VESK_LOG_ERROR("VESKLogin::LoginRetObserver",
                   " [ %s ] login observer is null or this seqID in cache", seqID);
}

void BaseRetObserver(const InnerBaseRet& inner, const char* seqID) {
    const VESKCallGate::Pass pass(DeliveryGate());
    VESKLoginObserver* observer = pass ? gObserver.load() : nullptr;
    VESKResultSink* sink = pass ? VESKResultSink::Get() : nullptr;
    if (observer == nullptr && sink == nullptr) {
        VESK_LOG_ERROR("VESKLogin::BaseRetObserver", " [ %s ] login observer is null", seqID);
        return;
    }
    VESK_LOG_DEBUG("VESKLogin::BaseRetObserver", "[ %s ] convert InnerBaseRet to VESKBaseRet start",
                   seqID);
    const VESKBaseRet ret = ToPublic(inner);
    VESK_LOG_DEBUG("VESKLogin::BaseRetObserver",
                   "[ %s ] convert InnerBaseRet to VESKBaseRet finish then will notify user",
                   seqID);
    NotifyUser("Braxel::VESK::VESKLogin::BaseRetObserver", [&] {
        if ((sink == nullptr || !sink->OnBase(ret, seqID)) && observer != nullptr) {
            observer->OnBaseRetNotify(ret);
        }
    });
}

void QrCodeRetObserver(const InnerQrCodeRet& inner, const char* seqID) {
    const VESKCallGate::Pass pass(DeliveryGate());
    VESKLoginObserver* observer = pass ? gObserver.load() : nullptr;
    VESKResultSink* sink = pass ? VESKResultSink::Get() : nullptr;
    if (observer == nullptr && sink == nullptr) {
        VESK_LOG_ERROR("VESKLogin::QrCodeRetObserver", " [ %s ] login observer is null", seqID);
        return;
    }
    VESK_LOG_DEBUG("VESKLogin::QrCodeRetObserver",
                   "[ %s ] convert InnerQrCodeRet to VESKQrCodeRet start", seqID);
    const VESKQrCodeRet ret = ToPublic(inner);
    VESK_LOG_DEBUG("VESKLogin::QrCodeRetObserver",
                   "[ %s ] convert InnerQrCodeRet to VESKQrCodeRet finish then will notify user",
                   seqID);
    NotifyUser("Braxel::VESK::VESKLogin::QrCodeRetObserver", [&] {
        if ((sink == nullptr || !sink->OnQrCode(ret, seqID)) && observer != nullptr) {
            observer->OnQrCodeRetNotify(ret);
        }
    });
}

/// Deliberate: a JSON object without a password still gets one, the digest of the empty text.
std::string WithPasswordDigest(const char* extraJson) {
    std::string first = extraJson;
    const VESKJsonManager given(first);
    const std::string digest = MD5::Hex(given.GetString("password"));
    std::string second = extraJson;
    VESKJsonManager changed(second);
    changed.PutIfAbsent("password", digest.c_str());
    return changed;
}

} // namespace

void ListenForResults() {
    VESKInnerObserverHolder<InnerLoginRet>::Register(kObserverIDLoginRet, &LoginRetObserver);
    VESKInnerObserverHolder<InnerBaseRet>::Register(kObserverIDBaseRet, &BaseRetObserver);
    VESKInnerObserverHolder<InnerQrCodeRet>::Register(kObserverIDQrCodeRet, &QrCodeRetObserver);
    VESKLoginManager::GetInstance();
}

void RunLogin(const char* channel, const char* permissions, const char* subChannel,
              const char* extraJson, const Begins& begins) {
    VESK_LOG_DEBUG("VESKLogin::Login", "channel:%s permissions:%s subChannel:%s extraJson:%s",
                   channel, permissions, subChannel, extraJson);
    LoginRequest request;
    request.extraJson = WithPasswordDigest(extraJson);
    request.methodNameID = kMethodNameLogin;
    request.seqID = VESK::CreateSequenceId();
    request.channel = channel;
    request.subChannel = subChannel;
    if (begins && !begins(request.seqID)) {
        return;
    }
    VESKLoginManager* manager = VESKLoginManager::GetInstance();
    manager->mNeedLoginObserve = true;
    manager->Login(request, permissions);
}

void RunAutoLogin(const Begins& begins) {
    ShortRequest request;
    request.methodNameID = kMethodNameAutoLogin;
    request.seqID = VESK::CreateSequenceId();
    if (begins && !begins(request.seqID)) {
        return;
    }
    VESKLoginManager* manager = VESKLoginManager::GetInstance();
    manager->mNeedLoginObserve = true;
    manager->AutoLogin(request);
}

void RunLogout(const char* channel, const char* subChannel, bool channelOnly,
               const Begins& begins) {
    ShortRequest request;
    request.methodNameID = kMethodNameLogout;
    request.seqID = VESK::CreateSequenceId();
    request.channel = channel;
    request.subChannel = subChannel;
    if (!begins || begins(request.seqID)) {
        VESKLoginManager::GetInstance()->Logout(request, channelOnly);
    }
}

bool HasEnded() {
    return gEnded;
}

bool HasEnded(const char* method) {
    const bool ended = gEnded;
    if (ended) {
        VESK_LOG_AT(kLogError, method, "the SDK has ended, UnInstall was called before");
    }
    return ended;
}

void VESKLogin::SetLoginObserver(VESKLoginObserver* observer) {
    UnlessEnded("Braxel::VESK::VESKLogin::SetLoginObserver", [&] {
        // Deliberate: the misplaced format letter, and so no address.
        VESK_LOG_DEBUG("VESKLogin::SetLoginObserver", "SetLoginObserver, observer address:p%%");
        gObserver = observer;
        ListenForResults();
    });
}

void VESKLogin::Login(const String& channel, const String& permissions, const String& subChannel,
                      const String& extraJson) {
    UnlessEnded("Braxel::VESK::VESKLogin::Login", [&] {
        RunLogin(channel.c_str(), permissions.c_str(), subChannel.c_str(), extraJson.c_str());
    });
}

void VESKLogin::AutoLogin() {
    UnlessEnded("Braxel::VESK::VESKLogin::AutoLogin", [] { RunAutoLogin(); });
}

bool VESKLogin::GetLoginRet(VESKLoginRet& loginRet) {
    bool found = false;
    UnlessEnded("Braxel::VESK::VESKLogin::GetLoginRet", [&] {
        InnerLoginRet inner;
        found = VESKLoginManager::GetInstance()->GetLoginRet(inner);
        loginRet = ToPublic(inner);
    });
    return found;
}

void VESKLogin::Logout(const String& channel, const String& subChannel, bool channelOnly) {
    UnlessEnded("Braxel::VESK::VESKLogin::Logout",
                [&] { RunLogout(channel.c_str(), subChannel.c_str(), channelOnly); });
}

bool VESKLogin::SwitchUser(bool /*useLaunchUser*/) {
    return false;
}

void VESKLogin::UnInstall() {
    Guarded("Braxel::VESK::VESKLogin::UnInstall", [] {
        if (gEnded.exchange(true)) {
            HasEnded("Braxel::VESK::VESKLogin::UnInstall");
            // The first call may be under way on another thread. From here on it keeps the library,
            // and this one's caller may free it, and the observer as well.
            DeliveryGate().Close();
            VESKModule::StartUnload();
            return;
        }
        VESK_LOG_DEBUG("VESKLogin::UnInstall", "UnInstall platform sdk");
        VESKResultSink::SdkEnds();
        DeliveryGate().Close();
        VESKHTTPManager::GetInstance()->Shutdown();
        VESKLoginManager::GetInstance()->UnInstallPlatformPlugins();
        VESK_LOG_DEBUG("VESKLogin::UnInstall", "UnInstall vesk dll");
        VESKModule::StartUnload();
    });
}

// The four operations that this platform does not have stay exported, so that callers link.

void VESKLogin::Bind(const String& /*channel*/, const String& /*permissions*/,
                     const String& /*subChannel*/, const String& /*extraJson*/) {}

void VESKLogin::LoginWithConfirmCode(int /*actionType*/, const String& /*confirmCode*/,
                                     const String& /*extraJson*/) {}

void VESKLogin::QueryUserInfo() {}

void VESKLogin::ResetGuest() {}

} // namespace VESK
} // namespace Braxel
