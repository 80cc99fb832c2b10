#include "faults/faultapi.h"

#include <climits>
#include <exception>

#include "server/httpserver.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

/// @return an empty text, or what is wrong with the fault.
std::string readFault(const JsonMembers& members, LineFault& fault) {
    static const std::pair<const char*, LineFault::Action> kActions[] = {
        {"pass", LineFault::Action::Pass},   {"refuse", LineFault::Action::Refuse},
        {"deaf", LineFault::Action::Deaf},   {"reset", LineFault::Action::Reset},
        {"close", LineFault::Action::Close}, {"stall", LineFault::Action::Stall},
        {"flood", LineFault::Action::Flood},
    };
    const std::string name = memberOf(members, "action");
    bool known = false;
    for (const auto& [actionName, action] : kActions) {
        if (name == actionName) {
            fault.action = action;
            known = true;
        }
    }
    if (!known) {
        return "action is " + inQuotes(name) +
               " where 'pass', 'refuse', 'deaf', 'reset', 'close', 'stall' or 'flood' was expected";
    }
    const std::string from = memberOf(members, "from");
    if (!from.empty() && from != "client" && from != "server") {
        return "from is " + inQuotes(from) + " where 'client' or 'server' was expected";
    }
    fault.fromServer = from == "server";
    fault.head = memberOf(members, "head");
    fault.wave = memberOf(members, "wave");
    if (fault.wave.empty() && fault.action == LineFault::Action::Flood) {
        return "wave is missing, of which the flood consists";
    }
    if (members.count("after") != 0) {
        const auto after = numberOf(members.at("after"), 0, UINT_MAX);
        if (!after) {
            return "after is not a number of bytes";
        }
        fault.after = static_cast<size_t>(*after);
    }
    return {};
}

} // namespace

void FaultApi::install(httplib::Server& server) {
    using httplib::Request;
    using httplib::Response;
    server.Get("/line", [this](const Request&, Response& response) { answerLine(response); });
    onPost(server, "/line", [this](const Request&, const JsonMembers& members, Response& response) {
        LineFault fault;
        const std::string problem = readFault(members, fault);
        if (problem.empty()) {
            setLine(fault, response);
        } else {
            answerError(response, 400, problem);
        }
    });
    onPost(server, "/certificate",
           [this](const Request&, const JsonMembers& members, Response& response) {
               chooseCertificate(memberOf(members, "kind"), response);
           });
}

void FaultApi::chooseCertificate(const std::string& kind, httplib::Response& response) {
    if (mChoice == nullptr) {
        answerError(response, 400, "this backend shows no certificate: start it with --tls");
    } else if (!mChoice->set(kind)) {
        answerError(response, 400,
                    "kind is " + inQuotes(kind) + ", which is no kind of certificate");
    } else {
        response.set_content("{}", kJsonType);
    }
}

void FaultApi::setLine(const LineFault& fault, httplib::Response& response) {
    try {
        line().set(fault);
    } catch (const std::exception& error) {
        answerError(response, 400, error.what());
        return;
    }
    answerLine(response);
}

FaultyLine& FaultApi::line() {
    const std::lock_guard<std::mutex> lock(mMutex);
    if (!mLine) {
        mLine = std::make_unique<FaultyLine>(mTarget);
    }
    return *mLine;
}

void FaultApi::answerLine(httplib::Response& response) {
    try {
        const FaultyLine& opened = line();
        const std::string scheme = mChoice == nullptr ? "http" : "https";
        response.set_content(
            JsonLine()
                .add("url", scheme + "://localhost:" + std::to_string(opened.port()))
                .add("connections", opened.connections())
                .text(),
            kJsonType);
    } catch (const std::exception& error) {
        answerError(response, 400, error.what());
    }
}

} // namespace vesk::backend
