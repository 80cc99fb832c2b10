#include "checks/requestcheck.h"

#include "checks/query.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

std::optional<Problem> checkServed(const ReceivedRequest& request, Endpoint endpoint,
                                   const CheckSettings& settings, long long now,
                                   CheckedRequest& checked) {
    if (request.method != "POST") {
        return Problem{Ret::WrongMethod,
                       "method is " + inQuotes(request.method) + " where 'POST' was expected"};
    }
    if (auto problem = readQuery(request.query(), checked.query)) {
        return problem;
    }
    if (auto problem = checkQueryValues(checked.query, endpoint, settings, now)) {
        return problem;
    }
    if (auto problem = checkSignature(request, checked.query, settings)) {
        return problem;
    }
    return checkBody(request.body, endpoint, checked.query.channelId, checked.body);
}

} // namespace

std::optional<Endpoint> endpointOf(const std::string& path) {
    if (path == "/v2/auth/pcprecode") {
        return Endpoint::PreCode;
    }
    if (path == "/v2/auth/login") {
        return Endpoint::Login;
    }
    if (path == "/v2/auth/logout") {
        return Endpoint::Logout;
    }
    return std::nullopt;
}

CheckedRequest checkRequest(const ReceivedRequest& request, const CheckSettings& settings,
                            long long now) {
    CheckedRequest checked;
    const auto endpoint = endpointOf(request.path());
    if (endpoint) {
        checked.problem = checkServed(request, *endpoint, settings, now, checked);
    } else {
        checked.problem = Problem{Ret::UnknownPath, "there is no path " + inQuotes(request.path())};
    }
    return checked;
}

} // namespace vesk::backend
