#include "answers/controlapi.h"

#include "answers/scriptedanswer.h"
#include "server/httpserver.h"
#include "server/json.h"
#include "server/system.h"

namespace vesk::backend {

namespace {

/// The port listens on loopback, but so does the browser: a page of another site could reach it.
/// It is refused by its origin; and by the host name, should it have pointed its own name here.
/// @return an empty text, or why the request is refused.
std::string refusalOf(const httplib::Request& request) {
    // A port that is forwarded has another number outside, so only the name counts.
    const std::string host = request.get_header_value("Host");
    const std::string name = host.substr(0, host.find(':'));
    if (name != "127.0.0.1" && name != "localhost") {
        return "the host must be 127.0.0.1 or localhost, not " + inQuotes(host);
    }
    if (request.get_header_value_count("Host") != 1 ||
        request.get_header_value_count("Origin") > 1) {
        return "there must be one host and one origin";
    }
    if (request.has_header("Origin") && request.get_header_value("Origin") != "http://" + host) {
        return "a page of another site may not do that: " +
               inQuotes(request.get_header_value("Origin"));
    }
    return {};
}

} // namespace

ControlApi::ControlApi(ScriptStore& scripts, RequestLog& log) : mScripts(scripts), mLog(log) {}

void ControlApi::install(httplib::Server& server) {
    server.set_pre_routing_handler(
        [](const httplib::Request& request, httplib::Response& response) {
            const std::string refusal = refusalOf(request);
            if (refusal.empty()) {
                return httplib::Server::HandlerResponse::Unhandled;
            }
            answerError(response, 403, refusal);
            return httplib::Server::HandlerResponse::Handled;
        });
    server.Get("/health", [](const httplib::Request&, httplib::Response& response) {
        response.set_content("ok", "text/plain");
    });
    server.Get("/requests", [this](const httplib::Request&, httplib::Response& response) {
        response.set_content(mLog.toJson(), kJsonType);
    });
    server.Post("/next", [this](const httplib::Request& request, httplib::Response& response,
                                const httplib::ContentReader& reader) {
        queueAnswer(request, reader, response);
    });
    server.Post("/clear", [this](const httplib::Request& request, httplib::Response& response,
                                 const httplib::ContentReader& reader) {
        std::string ignored;
        readBody(request, reader, ignored);
        mScripts.clear();
        mLog.clear();
        response.set_content("{}", kJsonType);
    });
    server.set_error_handler([](const httplib::Request& request, httplib::Response& response) {
        if (response.body.empty()) {
            answerError(response, response.status,
                        "no such operation: " + request.method + " " + request.path);
        }
    });
}

void ControlApi::queueAnswer(const httplib::Request& request, const httplib::ContentReader& reader,
                             httplib::Response& response) {
    std::string body;
    if (!readBody(request, reader, body)) {
        answerError(response, 400, "the body cannot be read");
        return;
    }
    ScriptedAnswer answer;
    const std::string problem = parseScript(body, answer);
    if (!problem.empty()) {
        answerError(response, 400, problem);
        return;
    }
    if (answer.action == Action::Reset && !canReset()) {
        answerError(response, 400, "'reset' is not possible on Windows; 'hang' and 'cut' are");
        return;
    }
    response.set_content(JsonLine().add("queued", mScripts.push(answer)).text(), kJsonType);
}

} // namespace vesk::backend
