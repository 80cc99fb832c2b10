#ifndef VESK_DEVKIT_BACKEND_CHECKS_QUERY_H
#define VESK_DEVKIT_BACKEND_CHECKS_QUERY_H

#include <optional>
#include <string>
#include <string_view>

#include "checks/contract.h"

namespace vesk::backend {

/// The values of the query's parameters, as they stood there.
struct Query {
    std::string channelId;
    std::string gameId;
    std::string os;
    /// Empty when the request carries none.
    std::string seq;
    std::string ts;
    std::string version;
    std::string sig;
};

/// Reads the query, which must hold channelid, gameid, os, [seq], ts, version and sig in exactly
/// this order and nothing else.
/// @param text the query without its '?'; it is not decoded
/// @return what is wrong with the order; the values are not looked at.
std::optional<Problem> readQuery(std::string_view text, Query& query);

/// Checks channel id, game id, os, version and the time stamp, in this order.
/// @param now the backend's clock in Unix seconds
std::optional<Problem> checkQueryValues(const Query& query, Endpoint endpoint,
                                        const CheckSettings& settings, long long now);

/// Checks the signature: lower-case hexadecimal MD5 over the target without its last parameter
/// "sig", the body and the key, over the bytes as they came.
/// The message never tells the signature that would have been right.
std::optional<Problem> checkSignature(const ReceivedRequest& request, const Query& query,
                                      const CheckSettings& settings);

} // namespace vesk::backend

#endif
