#include "server/originguard.h"

#include "server/jsonanswer.h"
#include "server/jsontext.h"

namespace vesk::backend {

std::string refusalOf(const httplib::Request& request) {
    // A port that is forwarded has another number outside, so only the name counts.
    const std::string host = request.get_header_value("Host");
    const std::string name = host.substr(0, host.find(':'));
    if (name != "127.0.0.1" && name != "localhost") {
        return "the host must be 127.0.0.1 or localhost, not " + backend::quoted(host);
    }
    if (request.get_header_value_count("Host") != 1 ||
        request.get_header_value_count("Origin") > 1) {
        return "there must be one host and one origin";
    }
    if (request.has_header("Origin") && request.get_header_value("Origin") != "http://" + host) {
        return "a page of another site may not do that: " +
               backend::quoted(request.get_header_value("Origin"));
    }
    return {};
}

void guardOrigins(httplib::Server& server) {
    server.set_pre_routing_handler(
        [](const httplib::Request& request, httplib::Response& response) {
            const std::string refusal = refusalOf(request);
            if (refusal.empty()) {
                return httplib::Server::HandlerResponse::Unhandled;
            }
            answerError(response, 403, refusal);
            return httplib::Server::HandlerResponse::Handled;
        });
}

} // namespace vesk::backend
