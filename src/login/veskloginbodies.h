#ifndef VESK_LOGIN_VESKLOGINBODIES_H
#define VESK_LOGIN_VESKLOGINBODIES_H

#include <cstdint>
#include <string>

namespace Braxel {
namespace VESK {

/// The JSON texts and small decisions of the login flow; nothing here keeps state.
class VESKLoginBodies {
public:
    /// Base addresses of the service itself; automatic login is for backends of one's own.
    static constexpr const char* kProductionBaseUrl = "https://login.vesk.example";
    static constexpr const char* kTestBaseUrl = "http://login-test.vesk.example";

    /// Whether automatic login is allowed against the backend @p baseUrl.
    static bool AllowsAutoLogin(const std::string& baseUrl);

    /// Body of "auth/login" for the channel credential @p channelInfo, a JSON object.
    static std::string Login(const std::string& channelInfo);

    /// Body of "auth/pcprecode"; empty for a channel that has none.
    /// @param serialNumber of the device, where the channel sends one.
    static std::string PreCode(const std::string& channel, const std::string& serialNumber);

    /// Body of "auth/logout".
    static std::string Logout(const std::string& token, const std::string& openid);

    /// The logout parameters, {"channelOnly":...}, and the flag read back from them.
    static std::string LogoutParams(bool channelOnly);
    static bool ReadChannelOnly(const std::string& params);

    /// Takes the fresh channel token out of a channel's refresh answer.
    /// @return its lifetime in seconds; 0 for a channel whose token is not refreshed.
    static int32_t ReadChannelToken(const std::string& channel, const std::string& channelInfo,
                                    std::string& token);

    /// The channel information that goes with a fresh channel token.
    static std::string RefreshedChannelInfo(const std::string& channel, const std::string& openid,
                                            const std::string& token);
};

} // namespace VESK
} // namespace Braxel

#endif
