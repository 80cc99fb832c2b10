#include "scanpage/sessionapi.h"

#include <algorithm>
#include <charconv>

#include "scanpage/qrimage.h"
#include "server/jsonanswer.h"
#include "server/jsontext.h"

namespace vesk::backend {

namespace {

constexpr long kMaxWaitMs = 30000;
constexpr long kMaxIndex = 1000000;
constexpr size_t kMaxSeq = 200;

void answerUnknown(httplib::Response& response, const std::string& id) {
    answerError(response, 404, "there is no session " + backend::quoted(id));
}

/// A parameter of the query; 0 when it is missing, -1 when it is no number from 0 to @p max.
long numberOf(const httplib::Request& request, const char* name, long max) {
    const std::string text = request.get_param_value(name);
    long number = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    const bool isGood =
        result.ec == std::errc() && result.ptr == end && number >= 0 && number <= max;
    return text.empty() || isGood ? number : -1;
}

const char* nameOf(ScanButton button) {
    return kScanButtons[static_cast<size_t>(button)].name;
}

/// @return an empty text, or what is wrong.
std::string readWord(const rapidjson::Document& body, ScanWord& word) {
    const std::string name = textMember(body, "button");
    const auto* named = std::find_if(kScanButtons.begin(), kScanButtons.end(),
                                     [&](const NamedButton& known) { return name == known.name; });
    if (named == kScanButtons.end()) {
        return "there is no button " + backend::quoted(name);
    }
    word.button = named->button;
    const auto code = body.FindMember("code");
    if (code != body.MemberEnd() && code->value.IsInt()) {
        word.code = code->value.GetInt();
    }
    if (word.button == ScanButton::Fail && word.code == 0) {
        return "the button 'fail' needs a code, a number other than 0";
    }
    return {};
}

} // namespace

SessionApi::SessionApi(ScanSessions& sessions, const IssuedPreCodes& preCodes)
    : mSessions(sessions), mPreCodes(preCodes) {}

void SessionApi::install(httplib::Server& server) {
    using httplib::ContentReader;
    using httplib::Request;
    using httplib::Response;
    server.Get("/sessions", [this](const Request&, Response& response) {
        response.set_content(mSessions.toJson(), kJsonType);
    });
    server.Post("/sessions",
                [this](const Request& request, Response& response, const ContentReader& reader) {
                    rapidjson::Document body;
                    if (readJsonObject(request, reader, body, response)) {
                        begin(body, response);
                    }
                });
    server.Get("/sessions/([0-9a-f]+)/qr\\.svg",
               [this](const Request& request, Response& response) {
                   image(request.matches[1], response);
               });
    server.Get("/sessions/([0-9a-f]+)/word", [this](const Request& request, Response& response) {
        word(request.matches[1], request, response);
    });
    server.Post("/sessions/([0-9a-f]+)/press",
                [this](const Request& request, Response& response, const ContentReader& reader) {
                    rapidjson::Document body;
                    if (readJsonObject(request, reader, body, response)) {
                        press(request.matches[1], body, response);
                    }
                });
    server.Post("/sessions/([0-9a-f]+)/end",
                [this](const Request& request, Response& response, const ContentReader& reader) {
                    rapidjson::Document body;
                    if (readJsonObject(request, reader, body, response)) {
                        end(request.matches[1], response);
                    }
                });
}

void SessionApi::begin(const rapidjson::Document& body, httplib::Response& response) {
    const std::string channel = textMember(body, "channel");
    const std::string qrCode = textMember(body, "qrcode");
    std::string seq = textMember(body, "seq");
    if (channel != "Ferno" && channel != "KZ") {
        answerError(response, 400,
                    "channel must be 'Ferno' or 'KZ', not " + backend::quoted(channel));
        return;
    }
    if (seq.size() > kMaxSeq || (!qrCode.empty() && !qrSvg(qrCode))) {
        answerError(response, 400, "the QR code's text or the sequence id is too long");
        return;
    }
    if (seq.empty()) {
        seq = mPreCodes.seqOf(textMember(body, "precode"));
    }
    const ScanSession session = mSessions.begin(channel, seq, qrCode);
    if (session.id.empty()) {
        answerError(response, 503, "there are too many sessions");
        return;
    }
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    writer.StartObject();
    writeMember(writer, "id", session.id);
    writeMember(writer, "qrcode", session.qrCode);
    writer.EndObject();
    response.set_content(buffer.GetString(), buffer.GetSize(), kJsonType);
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
    const long index = numberOf(request, "index", kMaxIndex);
    const long waitMs = numberOf(request, "wait_ms", kMaxWaitMs);
    if (index < 0 || waitMs < 0) {
        answerError(response, 400, "index or wait_ms is not a number in its range");
        return;
    }
    const auto answer =
        mSessions.waitForWord(id, static_cast<size_t>(index), std::chrono::milliseconds(waitMs));
    if (!answer) {
        answerUnknown(response, id);
        return;
    }
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    writer.StartObject();
    writeMember(writer, "button", answer->word ? nameOf(answer->word->button) : "");
    writer.Key("code");
    writer.Int(answer->word ? answer->word->code : 0);
    writer.Key("over");
    writer.Bool(answer->over);
    writer.EndObject();
    response.set_content(buffer.GetString(), buffer.GetSize(), kJsonType);
}

void SessionApi::press(const std::string& id, const rapidjson::Document& body,
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
