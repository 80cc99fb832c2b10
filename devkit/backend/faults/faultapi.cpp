#include "faults/faultapi.h"

#include <climits>
#include <exception>

#include "server/httpserver.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

constexpr int kMaxDelayMs = 10000;

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
    if (members.count("delay_ms") != 0) {
        const auto delay = numberOf(members.at("delay_ms"), 0, kMaxDelayMs);
        if (!delay) {
            return "delay_ms is not a number up to " + std::to_string(kMaxDelayMs);
        }
        fault.delayMs = static_cast<int>(*delay);
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
               setConduct(members, {{"kind", &TlsConduct::showCertificate}}, response);
           });
    server.Get("/tls", [this](const Request&, Response& response) { answerCounts(response); });
    onPost(server, "/tls", [this](const Request&, const JsonMembers& members, Response& response) {
        setConduct(
            members,
            {{"sessions", &TlsConduct::treatSessions}, {"version", &TlsConduct::speakVersion}},
            response);
    });
}

void FaultApi::setConduct(const JsonMembers& members,
                          const std::vector<std::pair<const char*, Take>>& takes,
                          httplib::Response& response) {
    if (mConduct == nullptr) {
        answerError(response, 400, "this backend has no TLS: start it with --tls");
        return;
    }
    size_t taken = 0;
    for (const auto& [name, take] : takes) {
        if (members.count(name) == 0) {
            continue;
        }
        ++taken;
        const std::string value = memberOf(members, name);
        if (!(mConduct->*take)(value)) {
            answerError(response, 400, name + (" is " + inQuotes(value)) + ", which it cannot be");
            return;
        }
    }
    if (taken == 0) {
        answerError(response, 400, std::string(takes.front().first) + " is missing");
        return;
    }
    answerCounts(response);
}

void FaultApi::answerCounts(httplib::Response& response) {
    const TlsCounts counts = mConduct == nullptr ? TlsCounts() : mConduct->counts();
    response.set_content(
        JsonLine().add("handshakes", counts.handshakes).add("resumed", counts.resumed).text(),
        kJsonType);
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
        const std::string scheme = mConduct == nullptr ? "http" : "https";
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
