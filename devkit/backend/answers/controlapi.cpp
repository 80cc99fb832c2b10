#include "answers/controlapi.h"

#include "answers/scriptedanswer.h"
#include "server/connection.h"
#include "server/httpserver.h"
#include "server/jsonanswer.h"

namespace vesk::backend {

ControlApi::ControlApi(ScriptStore& scripts, RequestLog& log) : mScripts(scripts), mLog(log) {}

void ControlApi::install(httplib::Server& server) {
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
    if (answer.action == Action::Reset && !Connection::canReset()) {
        answerError(response, 400, "'reset' is not possible on Windows; 'hang' and 'cut' are");
        return;
    }
    response.set_content("{\"queued\":" + std::to_string(mScripts.push(answer)) + "}", kJsonType);
}

} // namespace vesk::backend
