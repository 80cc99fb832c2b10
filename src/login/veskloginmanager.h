#ifndef VESK_LOGIN_VESKLOGINMANAGER_H
#define VESK_LOGIN_VESKLOGINMANAGER_H

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "common/veskinnerrecords.h"
#include "common/veskrequests.h"
#include "login/veskcurrentlogin.h"
#include "login/veskheldlogin.h"
#include "login/vesklogouts.h"
#include "module/vesksingleton.h"

namespace Braxel {
namespace VESK {

class VESKTask;

/// Runs logins; the held login and the logouts under way are parts of it. Any thread may call it.
/// No lock of these is held across HTTP, channel or observer calls, and the held login's
/// mStoreMutex alone has others inside it.
class VESKLoginManager {
public:
    static VESKLoginManager* GetInstance() {
        return VESKSingleton<VESKLoginManager>::GetInstance();
    }

    /// Whether a finished login is delivered to the game.
    std::atomic<bool> mNeedLoginObserve{false};

    void Login(const LoginRequest& request, const std::string& permissions);
    void AutoLogin(const ShortRequest& request);

    /// Whether the result of @p seqID is the one that the game waits for; true only once.
    /// @param isSuccess a failure is not what it waits for once a success is stored.
    bool checkLoginNotify(const std::string& seqID, bool isSuccess = true);

    /// The login that runs.
    VESKCurrentLogin& Current() { return mCurrent; }

    // See VESKHeldLogin.
    std::shared_ptr<const InnerLoginRet> HeldRecord() { return mHeld.Record(); }
    bool GetLoginRet(InnerLoginRet& out) { return mHeld.Get(out); }
    bool SaveLoginRet(const InnerLoginRet& ret) { return mHeld.Save(ret); }
    bool DeleteLoginRet() { return mHeld.Drop(); }
    void NoteRefresh() { mHeld.NoteRefresh(); }
    void UpdateLoginRet(const String& loginData, InnerLoginRet& out) {
        mHeld.Update(loginData, out);
    }

    /// Arms the periodic refresh of the channel token.
    void TimerRefreshToken(const std::string& seqID, const std::string& channel);

    /// The task that TimerRefreshToken() arms.
    static std::unique_ptr<VESKTask> MakeRefreshTask();

    void Logout(const ShortRequest& request, bool channelOnly) {
        mLogouts.Logout(request, channelOnly);
    }

    /// Stops the background work and closes the channel components.
    void UnInstallPlatformPlugins();

private:
    friend class VESKSingleton<VESKLoginManager>;
    using NotifyObserver = void (*)(const InnerLoginRet& ret);
    VESKLoginManager();

    void GetLoginPreCode(const ExtendedLoginRequest& request);
    std::string GetPreCodePostData(const ExtendedLoginRequest& request);
    void HandlePreCode(ExtendedLoginRequest& request, const std::string& body);
    void HandleLogin(const InnerLoginPluginRet& answer, int32_t result, const std::string& body,
                     const std::string& seqID);
    bool HandleLoginSuccess(InnerLoginRet& ret, const std::string& seqID, const std::string& body);
    void EndWithdrawn(const InnerLoginRet& ret, const std::string& seqID);
    bool IsCurrent(const std::string& seqID, const char* method);
    void PostLogin(const InnerLoginPluginRet& answer, const std::string& seqID);

    // Channel answers, by way of the inner observer holder.
    static void PluginLoginObserver(const InnerLoginPluginRet& answer, const char* seqID);
    static void PluginLogoutObserver(const InnerBaseRet& answer, const char* seqID);
    static void PluginRefreshObserver(const InnerLoginPluginRet& answer, const char* seqID);

    // Backend answers, on the request's thread; each frees its context.
    static void OnPreCodeResp(int32_t reqSeq, int32_t result, const std::string& body,
                              void* context);
    static void OnLoginResp(int32_t reqSeq, int32_t result, const std::string& body, void* context);

    VESKHeldLogin mHeld;
    VESKLogouts mLogouts;

    VESKCurrentLogin mCurrent;
    std::shared_ptr<const InnerLoginRet> mPendingLoginRet; // waits for real-name authentication

    std::vector<NotifyObserver> mLoginNotifyObservers;
};

} // namespace VESK
} // namespace Braxel

#endif
