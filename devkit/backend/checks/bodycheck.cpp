#include "checks/bodycheck.h"

#include <algorithm>
#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "server/json.h"

namespace vesk::backend {

namespace {

// Iterative: a hostile body must not decide how deep the stack grows.
constexpr unsigned kParseFlags =
    rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;

std::optional<Problem> problemUnlessEmpty(Ret ret, const std::string& msg) {
    return msg.empty() ? std::nullopt : std::make_optional(Problem{ret, msg});
}

std::optional<Problem> parseBody(const std::string& body, rapidjson::Document& document) {
    if (body.empty()) {
        return Problem{Ret::BodyNotJson, "the body is empty"};
    }
    // The parser takes a zero byte for the end of the text.
    const size_t zero = body.find('\0');
    if (zero != std::string::npos) {
        return Problem{Ret::BodyNotJson,
                       "the body is not JSON: zero byte at offset " + std::to_string(zero)};
    }
    document.Parse<kParseFlags>(body.data(), body.size());
    if (document.HasParseError()) {
        return Problem{Ret::BodyNotJson, std::string("the body is not JSON: ") +
                                             rapidjson::GetParseError_En(document.GetParseError()) +
                                             " (offset " +
                                             std::to_string(document.GetErrorOffset()) + ")"};
    }
    return std::nullopt;
}

std::string checkNonEmptyText(const rapidjson::Value& value, const std::string& where) {
    if (!value.IsString()) {
        return where + " is " + kindOf(value) + " where a string was expected";
    }
    return value.GetStringLength() == 0 ? where + " is empty" : std::string();
}

std::string checkSteamInfo(const rapidjson::Value& info) {
    if (std::string msg = checkMembers(info, "channel_info", {"steamid", "ticket"}); !msg.empty()) {
        return msg;
    }
    if (std::string msg = checkNonEmptyText(info["steamid"], "channel_info.steamid");
        !msg.empty()) {
        return msg;
    }
    const std::string id = textOf(info["steamid"]);
    if (!std::all_of(id.begin(), id.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        return "channel_info.steamid is " + inQuotes(id) + ", which is not a decimal number";
    }
    if (!info["ticket"].IsString()) {
        return "channel_info.ticket is " + kindOf(info["ticket"]) + " where a string was expected";
    }
    const std::string ticket = textOf(info["ticket"]);
    const bool hex = std::all_of(ticket.begin(), ticket.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
    });
    if (!hex || ticket.size() % 2 != 0) {
        return "channel_info.ticket is " + inQuotes(ticket) +
               ", which is not whole bytes in upper-case hexadecimal digits";
    }
    return {};
}

std::string checkMessengerInfo(const rapidjson::Value& info, const char* tokenName) {
    if (std::string msg = checkMembers(info, "channel_info", {"openid", tokenName}); !msg.empty()) {
        return msg;
    }
    if (std::string msg = checkNonEmptyText(info["openid"], "channel_info.openid"); !msg.empty()) {
        return msg;
    }
    return checkNonEmptyText(info[tokenName], std::string("channel_info.") + tokenName);
}

std::string checkLoginInfo(const rapidjson::Value& info, const std::string& channelId) {
    if (channelId == kSteamChannelId) {
        return checkSteamInfo(info);
    }
    return checkMessengerInfo(info, channelId == kKzChannelId ? "ctk" : "ctt");
}

std::string checkPreCodeInfo(const rapidjson::Value& info, const std::string& channelId) {
    if (channelId == kFernoChannelId) {
        const bool emptyText = info.IsString() && info.GetStringLength() == 0;
        return emptyText ? "" : "channel_info of channel 1 is not the empty string";
    }
    if (std::string msg = checkMembers(info, "channel_info", {"devinfo"}); !msg.empty()) {
        return msg;
    }
    return info["devinfo"].IsString() ? "" : "channel_info.devinfo is not a string";
}

std::string checkDeviceInfo(const rapidjson::Value& info) {
    if (info.IsObject() && info.ObjectEmpty()) {
        return {};
    }
    std::string msg = checkMembers(info, "device_info",
                                   {"uuid", "device_language", "app_version", "screen_dpi",
                                    "resolution", "trade_mark", "manufacturer", "model", "apn",
                                    "ram_info", "rom_info", "cpu_info"});
    if (!msg.empty()) {
        return msg;
    }
    for (const auto& member : info.GetObject()) {
        const std::string name = textOf(member.name);
        const bool number = name == "screen_dpi";
        if (number ? !member.value.IsNumber() : !member.value.IsString()) {
            return "device_info." + name + " is " + kindOf(member.value) + " where " +
                   (number ? "a number" : "a string") + " was expected";
        }
    }
    return {};
}

void readLogin(const rapidjson::Value& info, const std::string& channelId, BodyContent& content) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    info.Accept(writer);
    content.channelInfo.assign(buffer.GetString(), buffer.GetSize());
    content.channelUserId = textOf(info[channelId == kSteamChannelId ? "steamid" : "openid"]);
}

std::optional<Problem> checkCredentialBody(const rapidjson::Value& root, Endpoint endpoint,
                                           const std::string& channelId, BodyContent& content) {
    if (auto problem = problemUnlessEmpty(
            Ret::BodyShape,
            checkMembers(root, "the body", {"channel_info", "device_info", "channel_dis"}))) {
        return problem;
    }
    const rapidjson::Value& info = root["channel_info"];
    const bool login = endpoint == Endpoint::Login;
    if (auto problem =
            problemUnlessEmpty(Ret::ChannelInfo, login ? checkLoginInfo(info, channelId)
                                                       : checkPreCodeInfo(info, channelId))) {
        return problem;
    }
    if (auto problem = problemUnlessEmpty(Ret::DeviceInfo, checkDeviceInfo(root["device_info"]))) {
        return problem;
    }
    if (!root["channel_dis"].IsString() || textOf(root["channel_dis"]) != "Windows") {
        return Problem{Ret::BodyShape, "channel_dis is not 'Windows'"};
    }
    if (login) {
        readLogin(info, channelId, content);
    }
    return std::nullopt;
}

std::optional<Problem> checkLogoutBody(const rapidjson::Value& root, BodyContent& content) {
    std::string msg = checkMembers(root, "the body", {"token", "openid"});
    if (msg.empty()) {
        msg = checkNonEmptyText(root["token"], "token");
    }
    if (msg.empty()) {
        msg = checkNonEmptyText(root["openid"], "openid");
    }
    if (!msg.empty()) {
        return Problem{Ret::BodyShape, msg};
    }
    content.token = textOf(root["token"]);
    content.openid = textOf(root["openid"]);
    return std::nullopt;
}

} // namespace

std::optional<Problem> checkBody(const std::string& body, Endpoint endpoint,
                                 const std::string& channelId, BodyContent& content) {
    rapidjson::Document document;
    if (auto problem = parseBody(body, document)) {
        return problem;
    }
    if (endpoint == Endpoint::Logout) {
        return checkLogoutBody(document, content);
    }
    return checkCredentialBody(document, endpoint, channelId, content);
}

} // namespace vesk::backend
