#include "answers/endpoints.h"

#include <chrono>
#include <ctime>

#include "answers/bodysender.h"
#include "answers/defaultanswer.h"
#include "server/connection.h"
#include "server/httpserver.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

constexpr auto kHangPoll = std::chrono::milliseconds(20);

long long now() {
    return static_cast<long long>(std::time(nullptr));
}

ReceivedRequest received(const httplib::Request& request, const std::string& body) {
    ReceivedRequest result;
    result.method = request.method;
    result.target = request.target;
    result.body = body;
    for (const auto& [name, value] : request.headers) {
        // The library adds the addresses of the connection as if they were headers.
        if (name != "REMOTE_ADDR" && name != "REMOTE_PORT" && name != "LOCAL_ADDR" &&
            name != "LOCAL_PORT") {
            result.headers.emplace_back(name, value);
        }
    }
    return result;
}

} // namespace

Endpoints::Endpoints(const CheckSettings& settings, ScriptStore& scripts, RequestLog& log,
                     IssuedPreCodes& preCodes, WaitingRoom& waitingRoom)
    : mSettings(settings), mScripts(scripts), mLog(log), mPreCodes(preCodes),
      mWaitingRoom(waitingRoom) {}

void Endpoints::install(httplib::Server& server) {
    // Every path comes here, known or not: a request to a wrong one is recorded as well.
    const std::string any = ".*";
    const auto withoutBody = [this](const httplib::Request& request, httplib::Response& response) {
        handle(request, std::string(), response);
    };
    const auto withBody = [this](const httplib::Request& request, httplib::Response& response,
                                 const httplib::ContentReader& reader) {
        std::string body;
        if (readBody(request, reader, body)) {
            handle(request, body, response);
        } else {
            response.status = 400;
            response.set_content(R"({"ret":400,"msg":"the body cannot be read"})", kJsonType);
        }
    };
    server.Get(any, withoutBody);
    server.Options(any, withoutBody);
    server.Post(any, withBody);
    server.Put(any, withBody);
    server.Patch(any, withBody);
    server.Delete(any, withBody);
}

void Endpoints::handle(const httplib::Request& request, const std::string& body,
                       httplib::Response& response) {
    LoggedRequest entry;
    entry.request = received(request, body);
    const CheckedRequest checked = check(entry.request);
    entry.verdict = checked.problem ? checked.problem->msg : "ok";
    entry.ret = checked.problem ? static_cast<int>(checked.problem->ret) : 0;

    const auto script = mScripts.take(scriptPath(entry.request.path()));
    const Answer answer = script ? scriptedAnswer(*script, entry.request, checked)
                                 : defaultAnswer(entry.request, checked);
    entry.scripted = script.has_value();
    entry.status = answer.status;
    // Before the answer leaves, so that whoever has the answer finds the request recorded.
    mLog.add(entry);

    if (script) {
        perform(*script, answer, request, response);
    } else {
        response.status = answer.status;
        response.set_content(answer.body, kJsonType);
    }
}

CheckedRequest Endpoints::check(const ReceivedRequest& request) const {
    CheckedRequest checked = checkRequest(request, mSettings, now());
    if (!checked.problem && endpointOf(request.path()) == Endpoint::Logout) {
        checked.problem =
            mLogins.check(checked.query.channelId, checked.body.openid, checked.body.token);
    }
    return checked;
}

Endpoints::Answer Endpoints::defaultAnswer(const ReceivedRequest& request,
                                           const CheckedRequest& checked) {
    Answer answer;
    if (checked.problem) {
        answer.body = problemAnswer(*checked.problem);
        if (checked.problem->ret == Ret::UnknownPath) {
            answer.status = 404;
        } else if (checked.problem->ret == Ret::WrongMethod) {
            answer.status = 405;
        }
        return answer;
    }
    switch (*endpointOf(request.path())) {
    case Endpoint::PreCode:
        answer.body = preCodeAnswer(mPreCodes.issue(checked.query.seq));
        break;
    case Endpoint::Login:
        answer.body = loginAnswer(
            mLogins.issue(checked.query.channelId, checked.body.channelUserId), checked, now());
        break;
    case Endpoint::Logout:
        answer.body = plainAnswer();
        break;
    }
    return answer;
}

Endpoints::Answer Endpoints::scriptedAnswer(const ScriptedAnswer& script,
                                            const ReceivedRequest& request,
                                            const CheckedRequest& checked) {
    if (script.action == Action::Reset || script.action == Action::Hang) {
        return {0, {}};
    }
    Answer answer;
    if (script.usesDefaultBody()) {
        answer = defaultAnswer(request, checked);
    } else if (script.action == Action::Echo) {
        answer.body = request.body;
    } else {
        answer.body = script.body.value_or(std::string());
    }
    const bool redirect = script.action == Action::Redirect;
    answer.status = script.status.value_or(redirect ? 307 : answer.status);
    if (script.action == Action::Answer && script.body && !checked.problem &&
        endpointOf(request.path()) == Endpoint::Login) {
        adoptLogin(checked, answer.body);
    }
    return answer;
}

void Endpoints::adoptLogin(const CheckedRequest& checked, const std::string& body) {
    const JsonMembers login = devkit::readJsonObject(body).value_or(JsonMembers());
    if (login.count("openid") != 0 && login.count("token") != 0) {
        mLogins.adopt(checked.query.channelId, login.at("openid"), login.at("token"));
    }
}

void Endpoints::perform(const ScriptedAnswer& script, const Answer& answer,
                        const httplib::Request& request, httplib::Response& response) {
    mWaitingRoom.waitFor(std::chrono::milliseconds(script.delayMs));
    response.status = answer.status;
    switch (script.action) {
    case Action::Redirect:
        response.set_header("Location", script.location);
        [[fallthrough]];
    case Action::Answer:
    case Action::Echo:
    case Action::Cut:
        sendBody(script, answer.body, mWaitingRoom, response);
        break;
    case Action::Hang:
        hang(request.remote_port);
        [[fallthrough]];
    case Action::Reset:
        // The library answers in any case; without a connection nobody hears it.
        if (const auto connection = Connection::find(mPort, request.remote_port)) {
            connection->reset();
        }
        response.status = 500;
        break;
    }
}

void Endpoints::hang(int peerPort) {
    const auto connection = Connection::find(mPort, peerPort);
    while (connection && !connection->peerGone() && !mWaitingRoom.waitFor(kHangPoll)) {
    }
}

} // namespace vesk::backend
