#ifndef VESK_DEVKIT_BACKEND_CHECKS_QUERYCHECK_H
#define VESK_DEVKIT_BACKEND_CHECKS_QUERYCHECK_H

#include <optional>

#include "checks/checksettings.h"
#include "checks/problem.h"
#include "checks/query.h"
#include "server/receivedrequest.h"

namespace vesk::backend {

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
