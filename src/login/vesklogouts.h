#ifndef VESK_LOGIN_VESKLOGOUTS_H
#define VESK_LOGIN_VESKLOGOUTS_H

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "common/veskinnerrecords.h"
#include "common/veskrequests.h"
#include "foundation/lifecycle/veskactivity.h"
#include "module/veskmutex.h"

namespace Braxel {
namespace VESK {

class VESKHeldLogin;

/// The logouts under way, from the game's call to the result. Any thread may call it.
class VESKLogouts {
public:
    /// @param held what a logout ends; it outlives this object.
    explicit VESKLogouts(VESKHeldLogin& held) : mHeld(held) {}

    void Logout(const ShortRequest& request, bool channelOnly);

    /// Logs out at the backend a login that nobody holds.
    static void LogOutAtBackend(const InnerLoginRet& login, const std::string& seqID);

    /// A channel has logged out.
    void OnChannelAnswer(const InnerBaseRet& answer, const char* seqID);

private:
    using NotifyObserver = void (*)(const InnerLoginRet& ret);

    /// A logout that its channel has not answered yet.
    struct Pending {
        std::string params;
        uint64_t storedLogins = 0; ///< when it began
        std::unique_ptr<VESKActivity> activity;
    };

    void Keep(const std::string& seqID, bool channelOnly, uint64_t storedLogins);
    Pending Take(const std::string& seqID);
    void SendRequest(const std::string& seqID, uint64_t storedLogins);

    /// On the request's thread; frees its context.
    static void OnResponse(int32_t reqSeq, int32_t result, const std::string& body, void* context);

    VESKHeldLogin& mHeld;
    VESKMutex mMutex;
    std::map<std::string, Pending> mPending; // by sequence id
    std::vector<NotifyObserver> mNotifyObservers;
};

} // namespace VESK
} // namespace Braxel

#endif
