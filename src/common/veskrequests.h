#ifndef VESK_COMMON_VESKREQUESTS_H
#define VESK_COMMON_VESKREQUESTS_H

#include <cstdint>
#include <string>

namespace Braxel {
namespace VESK {

/// What the facade hands to the login manager.
struct ShortRequest {
    int32_t methodNameID = 0;
    std::string seqID;
    std::string channel;
    std::string subChannel;
};

struct LoginRequest : ShortRequest {
    std::string extraJson;
};

/// The login manager's own copy of a login request, as it grows during the flow.
struct ExtendedLoginRequest : LoginRequest {
    uint64_t order = 0; ///< among all logins of the process
    std::string permissions;
    std::string preCode; ///< from the backend, for the messenger channels
    std::string reserved;
};

struct AutoLoginRequest : ShortRequest {
    uint64_t order = 0; ///< among all logins of the process
    std::string uid;    ///< the player that the device remembers
};

struct LogoutRequest : ShortRequest {
    bool channelOnly = false;
};

} // namespace VESK
} // namespace Braxel

#endif
