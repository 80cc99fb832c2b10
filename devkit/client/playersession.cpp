#include "client/playersession.h"

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace vesk::scanclient {

namespace {

constexpr auto kPatience = std::chrono::milliseconds(2000);
constexpr const char* kWaitMs = "2000";
constexpr auto kWaitPatience = std::chrono::milliseconds(4000);
constexpr auto kEndPatience = std::chrono::milliseconds(200);

/// A member's text; nothing when there is none.
std::optional<std::string> textOf(const rapidjson::Document& document, const char* name) {
    if (document.HasParseError() || !document.IsObject()) {
        return std::nullopt;
    }
    const auto member = document.FindMember(name);
    if (member == document.MemberEnd() || !member->value.IsString()) {
        return std::nullopt;
    }
    return std::string(member->value.GetString(), member->value.GetStringLength());
}

std::string registration(const std::string& channel, const std::string& preCode) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    writer.StartObject();
    writer.Key("channel");
    writer.String(channel.c_str());
    writer.Key("precode");
    writer.String(preCode.c_str());
    writer.EndObject();
    return buffer.GetString();
}

} // namespace

void PlayerSession::serve(const PlayerScript& script, const std::string& preCode,
                          const Play& play) {
    const auto qrCode = begin(script.channel, preCode);
    if (!qrCode) {
        play(script.noConsole);
        return;
    }
    play(script.showCode + *qrCode);
    // A confirmed player can still be kicked out, so only a failure counts before that.
    bool isDecided = false;
    auto word = next();
    while (word) {
        const std::string step = script.stepOf(*word);
        if (!step.empty()) {
            isDecided = isDecided || word->button != "scanned";
            play(step);
        }
        if (word->over) {
            break;
        }
        word = next();
    }
    if (!isDecided && !mStopped) {
        play(script.consoleGone);
    }
    end();
}

std::optional<std::string> PlayerSession::begin(const std::string& channel,
                                                const std::string& preCode) {
    const auto answer =
        mClient.post("/sessions", registration(channel, preCode), kPatience, &mStopped);
    rapidjson::Document document;
    document.Parse<rapidjson::kParseIterativeFlag>(answer.value_or("").c_str());
    const auto id = textOf(document, "id");
    auto qrCode = textOf(document, "qrcode");
    if (!id || !qrCode) {
        return std::nullopt;
    }
    mId = *id;
    return qrCode;
}

std::optional<PlayerWord> PlayerSession::next() {
    const auto answer = mClient.get("/sessions/" + mId + "/word?index=" + std::to_string(mWords) +
                                        "&wait_ms=" + kWaitMs,
                                    kWaitPatience, &mStopped);
    rapidjson::Document document;
    document.Parse<rapidjson::kParseIterativeFlag>(answer.value_or("").c_str());
    const auto button = textOf(document, "button");
    if (!button) {
        return std::nullopt;
    }
    PlayerWord word;
    word.button = *button;
    const auto code = document.FindMember("code");
    if (code != document.MemberEnd() && code->value.IsInt()) {
        word.code = code->value.GetInt();
    }
    const auto over = document.FindMember("over");
    word.over = over != document.MemberEnd() && over->value.IsTrue();
    mWords += word.button.empty() ? 0U : 1U;
    return word;
}

void PlayerSession::end() {
    if (!mId.empty()) {
        mClient.post("/sessions/" + mId + "/end", "{}", kEndPatience, nullptr);
    }
}

} // namespace vesk::scanclient
