#include "answers/endpoints.h"

#include <ctime>

#include "server/controlport.h"
#include "server/httpserver.h"
#include "server/json.h"
#include "server/system.h"

namespace vesk::backend {

namespace {

constexpr long long kTokenSeconds = 7200;
constexpr size_t kNameDigits = 6;

long long now() {
    return static_cast<long long>(std::time(nullptr));
}

ReceivedRequest received(const httplib::Request& request, const std::string& body) {
    ReceivedRequest result{request.method, request.target, {}, body};
    for (const auto& [name, value] : request.headers) {
        // The library adds the addresses of the connection as if they were headers.
        if (name != "REMOTE_ADDR" && name != "REMOTE_PORT" && name != "LOCAL_ADDR" &&
            name != "LOCAL_PORT") {
            std::string& joined = result.headers[name];
            joined += (joined.empty() ? "" : ", ") + value;
        }
    }
    return result;
}

int statusFor(Ret ret) {
    if (ret == Ret::UnknownPath) {
        return 404;
    }
    return ret == Ret::WrongMethod ? 405 : 200;
}

/// A whole account record; "channel_info" and "seq" go back as they came.
void addLogin(JsonLine& json, const IssuedLogin& login, const CheckedRequest& checked) {
    json.add("openid", login.openid)
        .add("uid", login.uid)
        .add("token", login.token)
        .add("token_expire_time", now() + kTokenSeconds)
        .add("first", login.first ? 1 : 0)
        .add("reg_channel_dis", "Windows")
        .add("user_name", "Player " + login.openid.substr(0, kNameDigits))
        .add("gender", 0)
        .add("birthdate", "")
        .add("picture_url", "")
        .add("pf", "dev-windows-" + checked.query.channelId)
        .add("pf_key", md5Hex(login.openid + login.token))
        .add("need_name_auth", false)
        .addRaw("channel_info", checked.body.channelInfo)
        .add("seq", checked.query.seq);
}

} // namespace

Endpoints::Endpoints(const CheckSettings& settings, RequestLog& log, Issued& issued,
                     WaitingRoom& waitingRoom)
    : mSettings(settings), mLog(log), mIssued(issued), mWaitingRoom(waitingRoom) {}

void Endpoints::install(httplib::Server& server) {
    // Every path comes here, known or not: a request to a wrong one is recorded as well.
    const std::string any = ".*";
    const auto withoutBody = [this](const httplib::Request& request, httplib::Response& response) {
        handle(request, std::string(), response);
    };
    const auto withBody = [this](const httplib::Request& request, httplib::Response& response,
                                 const httplib::ContentReader& reader) {
        if (const auto body = readBody(request, reader)) {
            handle(request, *body, response);
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

void Endpoints::installControl(httplib::Server& server) {
    onPost(server, "/next", [this](const httplib::Request&, const std::string& body) {
        return JsonLine().add("queued", mScripts.push(readScript(body))).text();
    });
    onGet(server, "/requests", [this](const httplib::Request&) { return mLog.toJson(); });
    onPost(server, "/clear", [this](const httplib::Request&, const std::string&) {
        mScripts.clear();
        mLog.clear();
        return "{}";
    });
}

void Endpoints::handle(const httplib::Request& request, const std::string& body,
                       httplib::Response& response) {
    LoggedRequest entry;
    entry.request = received(request, body);
    const CheckedRequest checked = check(entry.request);
    const auto script = mScripts.take(scriptPath(entry.request.path()));
    const Answer answer = script ? scriptedAnswer(*script, body, checked) : defaultAnswer(checked);
    entry.problem = checked.problem;
    entry.scripted = script.has_value();
    entry.status = answer.status;
    // Before the answer leaves, so that whoever has the answer finds the request recorded.
    mLog.add(entry);
    deliver(script.value_or(ScriptedAnswer()), answer, mWaitingRoom, request, response);
}

CheckedRequest Endpoints::check(const ReceivedRequest& request) const {
    CheckedRequest checked = checkRequest(request, mSettings, now());
    if (checked.isGood() && checked.endpoint == Endpoint::Logout) {
        checked.problem =
            mIssued.checkLogout(checked.query.channelId, checked.body.openid, checked.body.token);
    }
    return checked;
}

Answer Endpoints::defaultAnswer(const CheckedRequest& checked) {
    const Problem& problem = checked.problem;
    JsonLine json;
    json.add("ret", static_cast<int>(problem.ret)).add("msg", checked.isGood() ? "" : problem.msg);
    if (checked.isGood() && checked.endpoint == Endpoint::PreCode) {
        json.add("precode", mIssued.preCode(checked.query.seq));
    } else if (checked.isGood() && checked.endpoint == Endpoint::Login) {
        addLogin(json, mIssued.login(checked.query.channelId, checked.body.channelUserId), checked);
    }
    return {statusFor(problem.ret), json.text()};
}

Answer Endpoints::scriptedAnswer(const ScriptedAnswer& script, const std::string& requestBody,
                                 const CheckedRequest& checked) {
    if (script.action == Action::Reset || script.action == Action::Hang) {
        return {0, {}};
    }
    Answer answer;
    if (script.usesDefaultBody()) {
        answer = defaultAnswer(checked);
    } else {
        answer.body =
            script.action == Action::Echo ? requestBody : script.body.value_or(std::string());
    }
    if (script.status != 0) {
        answer.status = script.status;
    } else if (script.action == Action::Redirect) {
        answer.status = 307;
    }
    if (script.action == Action::Answer && script.body && checked.isGood() &&
        checked.endpoint == Endpoint::Login) {
        adoptLogin(checked.query.channelId, answer.body);
    }
    return answer;
}

void Endpoints::adoptLogin(const std::string& channelId, const std::string& body) {
    const auto login = devkit::readJsonObject(body);
    if (login && login->count("openid") != 0 && login->count("token") != 0) {
        mIssued.adoptLogin(channelId, login->at("openid"), login->at("token"));
    }
}

} // namespace vesk::backend
