#ifndef VESK_LOGIN_VESKLOGINMANAGER_H
#define VESK_LOGIN_VESKLOGINMANAGER_H

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "common/veskinnerrecords.h"
#include "common/veskrequests.h"
#include "module/veskmutex.h"
#include "module/vesksingleton.h"

namespace Braxel {
namespace VESK {

class VESKTask;

/// Runs logins and logouts and keeps the login result. Any thread may call it; none of its locks
/// is held across HTTP, channel or observer calls, and no two of the first three are ever nested.
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

    /// The success that is stored for @p seqID got lost on its way to the game: a failure counts.
    void ReopenLogin(const std::string& seqID);

    /// Reads the login that is held, or what the device remembers of an earlier one.
    /// @return whether one is held. An expired one is, with retCode TOKEN_EXPIRED.
    bool GetLoginRet(InnerLoginRet& out);

    /// @return whether the device file was written. Only then is @p ret held.
    bool SaveLoginRet(const InnerLoginRet& ret);

    /// @return whether the device file was removed.
    bool DeleteLoginRet();

    /// The channel is about to be asked for a fresh token of the login that is held: its answer is
    /// for no other one.
    void NoteRefresh();

    /// Merges the JSON object @p loginData into the held login and gives the result in @p out.
    void UpdateLoginRet(const String& loginData, InnerLoginRet& out);

    /// Arms the periodic refresh of the channel token.
    void TimerRefreshToken(const std::string& seqID, const std::string& channel);

    /// The task that TimerRefreshToken() arms.
    static std::unique_ptr<VESKTask> MakeRefreshTask();

    void Logout(const ShortRequest& request, bool channelOnly);

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
    uint64_t BeginLogin(const std::string& seqID);
    bool CloseLogin(const std::string& seqID);
    bool IsCurrent(const std::string& seqID, const char* method);
    void PostLogin(const InnerLoginPluginRet& answer, const std::string& seqID);
    void RefreshLogin(const InnerLoginPluginRet& answer);
    /// A logout that its channel has not answered yet.
    struct PendingLogout {
        std::string params;
        uint64_t storedLogins = 0; ///< when it began
    };

    void SendLogoutRequest(const std::string& seqID, uint64_t storedLogins);
    void KeepLogout(const std::string& seqID, bool channelOnly, uint64_t storedLogins);
    PendingLogout TakeLogout(const std::string& seqID);
    uint64_t StoredLogins();

    // Channel answers, by way of the inner observer holder.
    static void PluginLoginObserver(const InnerLoginPluginRet& answer, const char* seqID);
    static void PluginLogoutObserver(const InnerBaseRet& answer, const char* seqID);
    static void PluginRefreshObserver(const InnerLoginPluginRet& answer, const char* seqID);

    // Backend answers, on the request's thread; each frees its context.
    static void OnPreCodeResp(int32_t reqSeq, int32_t result, const std::string& body,
                              void* context);
    static void OnLoginResp(int32_t reqSeq, int32_t result, const std::string& body, void* context);
    static void OnLogoutResp(int32_t reqSeq, int32_t result, const std::string& body,
                             void* context);

    std::shared_ptr<const InnerLoginRet> HeldLogin();
    bool isLoginRetEmpty();
    bool CheckExpiry(InnerLoginRet& out);
    bool ReadDeviceCache(InnerLoginRet& out);
    bool StoreLogin(const InnerLoginRet& ret);
    bool StoreCurrentLogin(const InnerLoginRet& ret, const std::string& seqID);
    bool StoreChanged(const InnerLoginRet& ret, uint64_t generation);
    uint64_t StoreGeneration();
    bool DropLogin();
    void DropLoginOf(uint64_t storedLogins);

    VESKMutex mLoginMutex; // guards the six below
    std::string mCurrentLoginSeqID;
    std::string mStoredSeqID; // the login whose success is stored
    uint64_t mLoginCount = 0;
    std::string mAutoLoginSeqID;
    int32_t mLoginState = 0;
    std::shared_ptr<const InnerLoginRet> mPendingLoginRet; // waits for real-name authentication

    VESKMutex mLoginRetMutex; // guards the pointer; a record is never changed once it is held
    std::shared_ptr<const InnerLoginRet> mLoginRet;

    VESKMutex mPendingLogoutMutex;
    std::map<std::string, PendingLogout> mPendingLogouts; // by sequence id

    // One user of the device file at a time; taken before mLoginRetMutex and mLoginMutex. It guards
    // the four below.
    VESKMutex mStoreMutex;
    uint64_t mStoreGeneration = 0; // moves with each change of the held record
    uint64_t mStoredLogins = 0;    // moves with each login that succeeds
    uint64_t mHeldLogin = 0;       // moves with each login and logout, but with no refresh
    uint64_t mRefreshedLogin = 0;  // the one that a fresh token was asked for; 0: nobody has asked

    std::vector<NotifyObserver> mLoginNotifyObservers;
    std::vector<NotifyObserver> mLogoutNotifyObservers;
};

} // namespace VESK
} // namespace Braxel

#endif
