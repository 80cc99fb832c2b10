#ifndef VESK_PLATFORMIMPL_LOGIN_VESKSTEAM_VESKLOGINSTEAM_H
#define VESK_PLATFORMIMPL_LOGIN_VESKSTEAM_VESKLOGINSTEAM_H

#include <atomic>
#include <string>

#include "module/vesksingleton.h"

namespace Braxel {
namespace VESK {

/// The Steam channel: takes the credential from the running Steam client, on the calling thread.
/// Logins, logouts and the uninstallation must not run at the same time.
class VESKLoginSteam {
public:
    static VESKLoginSteam* GetInstance() { return VESKSingleton<VESKLoginSteam>::GetInstance(); }

    bool InitSteamApi();

    /// Answers with the credential as a channel answer, or with a failed login result.
    void Login(std::string seqID);

    /// Answers with success, always.
    void Logout(std::string seqID);

private:
    friend class VESKSingleton<VESKLoginSteam>;
    VESKLoginSteam() = default;

    std::atomic<bool> mInitialised{false}; // never reset, not even by a logout
};

} // namespace VESK
} // namespace Braxel

#endif
