#include "faults/faultapi.h"

#include <exception>

#include "server/jsonanswer.h"
#include "server/jsontext.h"

namespace vesk::backend {

namespace {

/// @return an empty text, or what is wrong with the fault.
std::string readFault(const rapidjson::Document& document, LineFault& fault) {
    static const std::pair<const char*, LineFault::Action> kActions[] = {
        {"pass", LineFault::Action::Pass},   {"refuse", LineFault::Action::Refuse},
        {"deaf", LineFault::Action::Deaf},   {"reset", LineFault::Action::Reset},
        {"close", LineFault::Action::Close}, {"stall", LineFault::Action::Stall},
        {"flood", LineFault::Action::Flood},
    };
    const std::string name = textMember(document, "action");
    bool known = false;
    for (const auto& [actionName, action] : kActions) {
        if (name == actionName) {
            fault.action = action;
            known = true;
        }
    }
    if (!known) {
        return "action is " + backend::quoted(name) +
               " where 'pass', 'refuse', 'deaf', 'reset', 'close', 'stall' or 'flood' was expected";
    }
    const std::string from = textMember(document, "from");
    if (!from.empty() && from != "client" && from != "server") {
        return "from is " + backend::quoted(from) + " where 'client' or 'server' was expected";
    }
    fault.fromServer = from == "server";
    fault.head = textMember(document, "head");
    fault.wave = textMember(document, "wave");
    if (fault.wave.empty() && fault.action == LineFault::Action::Flood) {
        return "wave is missing, of which the flood consists";
    }
    const auto after = document.FindMember("after");
    if (after != document.MemberEnd()) {
        if (!after->value.IsUint()) {
            return "after is not a number of bytes";
        }
        fault.after = after->value.GetUint();
    }
    return {};
}

} // namespace

void FaultApi::install(httplib::Server& server) {
    using httplib::ContentReader;
    using httplib::Request;
    using httplib::Response;
    server.Post("/certificate",
                [this](const Request& request, Response& response, const ContentReader& reader) {
                    rapidjson::Document document;
                    if (readJsonObject(request, reader, document, response)) {
                        chooseCertificate(textMember(document, "kind"), response);
                    }
                });
    server.Get("/line", [this](const Request&, Response& response) { answerLine(response); });
    server.Post("/line",
                [this](const Request& request, Response& response, const ContentReader& reader) {
                    rapidjson::Document document;
                    if (!readJsonObject(request, reader, document, response)) {
                        return;
                    }
                    LineFault fault;
                    const std::string problem = readFault(document, fault);
                    if (problem.empty()) {
                        setLine(fault, response);
                    } else {
                        answerError(response, 400, problem);
                    }
                });
}

void FaultApi::chooseCertificate(const std::string& kind, httplib::Response& response) {
    if (mChoice == nullptr) {
        answerError(response, 400, "this backend shows no certificate: start it with --tls");
    } else if (!mChoice->set(kind)) {
        answerError(response, 400,
                    "kind is " + backend::quoted(kind) + ", which is no kind of certificate");
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
        response.set_content("{\"url\":\"" + scheme +
                                 "://localhost:" + std::to_string(opened.port()) +
                                 "\",\"connections\":" + std::to_string(opened.connections()) + "}",
                             kJsonType);
    } catch (const std::exception& error) {
        answerError(response, 400, error.what());
    }
}

} // namespace vesk::backend
