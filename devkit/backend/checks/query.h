#ifndef VESK_DEVKIT_BACKEND_CHECKS_QUERY_H
#define VESK_DEVKIT_BACKEND_CHECKS_QUERY_H

#include <optional>
#include <string>
#include <string_view>

#include "checks/problem.h"

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

} // namespace vesk::backend

#endif
