#ifndef VESK_COMMON_VESKCHANNELFACTS_H
#define VESK_COMMON_VESKCHANNELFACTS_H

#include <cstdint>
#include <string>

namespace Braxel {
namespace VESK {

enum class VESKChannelKind {
    kUnknown,   ///< nobody is asked, and no login is ever answered
    kGuest,     ///< no component and no token of its own
    kDirect,    ///< logs in at once
    kMessenger, ///< logs in by a QR code, for which the backend gives a pre-code
};

/// What sets one channel apart from another for the login: one row a channel.
struct VESKChannelFacts {
    const char* name;
    int32_t id;
    VESKChannelKind kind;
    int32_t preCodeChannelID; ///< for a request that is made before the channel has answered
    const char* tokenKey;     ///< the channel token's member in the channel information
    int32_t tokenLifetime;    ///< of a fresh token, in seconds; 0: it is not refreshed
    int32_t refreshMargin;    ///< how many seconds before its end a token is refreshed
    bool allowsAutoLogin;
    bool sendsSerialNumber; ///< of the device, with the request for a pre-code
    bool hasPayToken;       ///< as a member of the channel information

    bool IsMessenger() const { return kind == VESKChannelKind::kMessenger; }
};

/// The row of the channel @p name, which is compared exactly. For any other name it is that of a
/// channel of kind kUnknown.
const VESKChannelFacts& ChannelFacts(const std::string& name);

} // namespace VESK
} // namespace Braxel

#endif
