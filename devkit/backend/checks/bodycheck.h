#ifndef VESK_DEVKIT_BACKEND_CHECKS_BODYCHECK_H
#define VESK_DEVKIT_BACKEND_CHECKS_BODYCHECK_H

#include <optional>
#include <string>

#include "checks/contract.h"

namespace vesk::backend {

/// What a good body says.
struct BodyContent {
    /// Of a login: "channel_info" as JSON text, and who the player is on the channel.
    std::string channelInfo;
    std::string channelUserId;
    /// Of a logout.
    std::string openid;
    std::string token;
};

/// Checks the body's shape: JSON, exactly the expected members in their order, each of its type.
/// @param channelId the query's channel id, which decides what "channel_info" must hold
std::optional<Problem> checkBody(const std::string& body, Endpoint endpoint,
                                 const std::string& channelId, BodyContent& content);

} // namespace vesk::backend

#endif
