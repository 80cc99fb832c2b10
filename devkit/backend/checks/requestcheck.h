#ifndef VESK_DEVKIT_BACKEND_CHECKS_REQUESTCHECK_H
#define VESK_DEVKIT_BACKEND_CHECKS_REQUESTCHECK_H

#include <optional>

#include "checks/bodycheck.h"
#include "checks/contract.h"
#include "checks/query.h"

namespace vesk::backend {

/// What the checks found.
struct CheckedRequest {
    /// The first thing that is wrong; none for a good request.
    std::optional<Problem> problem;
    /// As far as it could be read.
    Query query;
    BodyContent body;
};

/// The operation that a path such as "/v2/auth/login" names, if the backend serves it.
std::optional<Endpoint> endpointOf(const std::string& path);

/// Checks a request: path, method, query order, query values, signature, body, in this order.
/// A pure function: it knows nothing of logins.
/// @param now the backend's clock in Unix seconds
CheckedRequest checkRequest(const ReceivedRequest& request, const CheckSettings& settings,
                            long long now);

} // namespace vesk::backend

#endif
