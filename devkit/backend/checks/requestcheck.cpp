#include "checks/requestcheck.h"

#include "server/json.h"

namespace vesk::backend {

namespace {

std::optional<Endpoint> endpointOf(const std::string& path) {
    static const std::pair<const char*, Endpoint> kPaths[] = {
        {"/v2/auth/pcprecode", Endpoint::PreCode},
        {"/v2/auth/login", Endpoint::Login},
        {"/v2/auth/logout", Endpoint::Logout},
    };
    for (const auto& [served, endpoint] : kPaths) {
        if (path == served) {
            return endpoint;
        }
    }
    return std::nullopt;
}

} // namespace

CheckedRequest checkRequest(const ReceivedRequest& request, const CheckSettings& settings,
                            long long now) {
    CheckedRequest checked;
    checked.endpoint = endpointOf(request.path());
    try {
        require(checked.endpoint.has_value(), Ret::UnknownPath,
                "there is no path " + inQuotes(request.path()));
        require(request.method == "POST", Ret::WrongMethod,
                "method is " + inQuotes(request.method) + " where 'POST' was expected");
        checkQuery(request, *checked.endpoint, settings, now, checked.query);
        checked.body = checkBody(request.body, *checked.endpoint, checked.query.channelId);
    } catch (const Problem& problem) {
        checked.problem = problem;
    }
    return checked;
}

} // namespace vesk::backend
