#include "scanpage/sessionapi.h"

#include <algorithm>
#include <climits>

#include "scanpage/qrimage.h"
#include "server/httpserver.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

constexpr long long kMaxWaitMs = 30000;
constexpr long long kMaxIndex = 1000000;
constexpr size_t kMaxSeq = 200;

void answerUnknown(httplib::Response& response, const std::string& id) {
    answerError(response, 404, "there is no session " + inQuotes(id));
}

const char* nameOf(ScanButton button) {
    return kScanButtons[static_cast<size_t>(button)].name;
}

/// @return an empty text, or what is wrong.
std::string readWord(const JsonMembers& body, ScanWord& word) {
    const std::string name = memberOf(body, "button");
    const auto* named = std::find_if(kScanButtons.begin(), kScanButtons.end(),
                                     [&](const NamedButton& known) { return name == known.name; });
    if (named == kScanButtons.end()) {
        return "there is no button " + inQuotes(name);
    }
    word.button = named->button;
    word.code = static_cast<int>(numberOf(memberOf(body, "code"), INT_MIN, INT_MAX).value_or(0));
    if (word.button == ScanButton::Fail && word.code == 0) {
        return "the button 'fail' needs a code, a number other than 0";
    }
    return {};
}

} // namespace

SessionApi::SessionApi(ScanSessions& sessions, const IssuedPreCodes& preCodes)
    : mSessions(sessions), mPreCodes(preCodes) {}

void SessionApi::install(httplib::Server& server) {
    using httplib::Request;
    using httplib::Response;
    server.Get("/sessions", [this](const Request&, Response& response) {
        response.set_content(mSessions.toJson(), kJsonType);
    });
    server.Get("/sessions/([0-9a-f]+)/qr\\.svg",
               [this](const Request& request, Response& response) {
                   image(request.matches[1], response);
               });
    server.Get("/sessions/([0-9a-f]+)/word", [this](const Request& request, Response& response) {
        word(request.matches[1], request, response);
    });
    onPost(server, "/sessions",
           [this](const Request&, const JsonMembers& body, Response& response) {
               begin(body, response);
           });
    onPost(server, "/sessions/([0-9a-f]+)/press",
           [this](const Request& request, const JsonMembers& body, Response& response) {
               press(request.matches[1], body, response);
           });
    onPost(server, "/sessions/([0-9a-f]+)/end",
           [this](const Request& request, const JsonMembers&, Response& response) {
               end(request.matches[1], response);
           });
}

void SessionApi::begin(const JsonMembers& body, httplib::Response& response) {
    const std::string channel = memberOf(body, "channel");
    const std::string qrCode = memberOf(body, "qrcode");
    std::string seq = memberOf(body, "seq");
    if (channel != "Ferno" && channel != "KZ") {
        answerError(response, 400, "channel must be 'Ferno' or 'KZ', not " + inQuotes(channel));
        return;
    }
    if (seq.size() > kMaxSeq || (!qrCode.empty() && !qrSvg(qrCode))) {
        answerError(response, 400, "the QR code's text or the sequence id is too long");
        return;
    }
    if (seq.empty()) {
        seq = mPreCodes.seqOf(memberOf(body, "precode"));
    }
    const ScanSession session = mSessions.begin(channel, seq, qrCode);
    if (session.id.empty()) {
        answerError(response, 503, "there are too many sessions");
        return;
    }
    response.set_content(JsonLine().add("id", session.id).add("qrcode", session.qrCode).text(),
                         kJsonType);
}

void SessionApi::image(const std::string& id, httplib::Response& response) {
    const auto text = mSessions.qrCodeOf(id);
    const auto svg = text ? qrSvg(*text) : std::nullopt;
    if (!svg) {
        answerUnknown(response, id);
        return;
    }
    response.set_header("Content-Security-Policy", "default-src 'none'");
    response.set_content(*svg, "image/svg+xml");
}

void SessionApi::word(const std::string& id, const httplib::Request& request,
                      httplib::Response& response) {
    const auto number = [&request](const char* name, long long max) {
        const std::string text = request.get_param_value(name);
        return text.empty() ? std::optional<long long>(0) : numberOf(text, 0, max);
    };
    const auto index = number("index", kMaxIndex);
    const auto waitMs = number("wait_ms", kMaxWaitMs);
    if (!index || !waitMs) {
        answerError(response, 400, "index or wait_ms is not a number in its range");
        return;
    }
    const auto answer =
        mSessions.waitForWord(id, static_cast<size_t>(*index), std::chrono::milliseconds(*waitMs));
    if (!answer) {
        answerUnknown(response, id);
        return;
    }
    response.set_content(JsonLine()
                             .add("button", answer->word ? nameOf(answer->word->button) : "")
                             .add("code", answer->word ? answer->word->code : 0)
                             .add("over", answer->over)
                             .text(),
                         kJsonType);
}

void SessionApi::press(const std::string& id, const JsonMembers& body,
                       httplib::Response& response) {
    ScanWord word;
    const std::string problem = readWord(body, word);
    if (!problem.empty()) {
        answerError(response, 400, problem);
        return;
    }
    switch (mSessions.press(id, word)) {
    case ScanSessions::Pressed::Done:
        response.set_content("{}", kJsonType);
        break;
    case ScanSessions::Pressed::Unknown:
        answerUnknown(response, id);
        break;
    case ScanSessions::Pressed::NotNow:
        answerError(response, 409, "the session does not take that button now");
        break;
    }
}

void SessionApi::end(const std::string& id, httplib::Response& response) {
    if (mSessions.end(id)) {
        response.set_content("{}", kJsonType);
    } else {
        answerUnknown(response, id);
    }
}

} // namespace vesk::backend
