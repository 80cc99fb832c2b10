#ifndef VESK_PLATFORMIMPL_LOGIN_VESKLOGINIMPL_H
#define VESK_PLATFORMIMPL_LOGIN_VESKLOGINIMPL_H

#include <string>

#include "common/veskrequests.h"
#include "foundation/lifecycle/veskcallgate.h"
#include "module/vesksingleton.h"

namespace Braxel {
namespace VESK {

struct InnerLoginRet;

/// Picks the channel by its name and calls it. Names are compared exactly; an unknown one is
/// logged and never answered. Channels answer through the inner observer holders.
class VESKLoginIMPL {
public:
    static VESKLoginIMPL* GetInstance() { return VESKSingleton<VESKLoginIMPL>::GetInstance(); }

    /// @return false when the channel is known to give no answer. An observer hears nothing then.
    bool LoginChannel(const ExtendedLoginRequest& request);
    void PluginAutoLogin(const AutoLoginRequest& request);

    /// @return whether there is a channel to answer.
    bool Logout(const LogoutRequest& request);

    /// Asks the channel for a fresh token.
    void RefreshToken(const std::string& channel);
    void RefreshToken(const InnerLoginRet& ret);

    /// The serial number that goes into a pre-code request; empty for a channel that has none.
    std::string GetGenerateSerialNumber(const std::string& channel);

    /// Closes the channel components. From then on no channel is called any more.
    void UnInstallPlugins();

private:
    friend class VESKSingleton<VESKLoginIMPL>;
    VESKLoginIMPL() = default;

    VESKCallGate mGate; // closed for good by UnInstallPlugins()

    void Refresh(const std::string& channel, const std::string& oldToken);
};

} // namespace VESK
} // namespace Braxel

#endif
