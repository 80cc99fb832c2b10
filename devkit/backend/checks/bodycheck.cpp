#include <algorithm>
#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "checks/requestcheck.h"
#include "common/text.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

using rapidjson::Value;

// Iterative: a hostile body must not decide how deep the stack grows.
constexpr unsigned kParseFlags =
    rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;

/// What a member must hold. Any is checked elsewhere.
enum class Kind { Any, Text, FullText, Decimal, HexBytes, Number };

struct Member {
    const char* name;
    Kind kind;
};

void parseBody(const std::string& body, rapidjson::Document& document) {
    require(!body.empty(), Ret::BodyNotJson, "the body is empty");
    // The parser takes a zero byte for the end of the text.
    const size_t zero = body.find('\0');
    require(zero == std::string::npos, Ret::BodyNotJson,
            "the body is not JSON: zero byte at offset " + std::to_string(zero));
    document.Parse<kParseFlags>(body.data(), body.size());
    require(!document.HasParseError(), Ret::BodyNotJson,
            std::string("the body is not JSON: ") +
                rapidjson::GetParseError_En(document.GetParseError()) + " (offset " +
                std::to_string(document.GetErrorOffset()) + ")");
}

bool isUpperHex(char c) {
    return devkit::isDigit(c) || (c >= 'A' && c <= 'F');
}

void checkValue(const Value& value, Kind kind, const std::string& where, Ret ret) {
    if (kind == Kind::Any) {
        return;
    }
    if (kind == Kind::Number) {
        require(value.IsNumber(), ret,
                where + " is " + kindOf(value) + " where a number was expected");
        return;
    }
    require(value.IsString(), ret, where + " is " + kindOf(value) + " where a string was expected");
    const std::string text = textOf(value);
    require(!text.empty() || kind == Kind::Text || kind == Kind::HexBytes, ret,
            where + " is empty");
    require(kind != Kind::Decimal || std::all_of(text.begin(), text.end(), devkit::isDigit), ret,
            where + " is " + inQuotes(text) + ", which is not a decimal number");
    require(kind != Kind::HexBytes ||
                (std::all_of(text.begin(), text.end(), isUpperHex) && text.size() % 2 == 0),
            ret,
            where + " is " + inQuotes(text) +
                ", which is not whole bytes in upper-case hexadecimal digits");
}

/// Checks that the object has exactly these members, in this order and of these kinds.
/// @param where how a message calls the object
void checkMembers(const Value& object, const std::string& where, Ret ret,
                  const std::vector<Member>& members) {
    require(object.IsObject(), ret,
            where + " is " + kindOf(object) + " where an object was expected");
    size_t index = 0;
    for (const auto& found : object.GetObject()) {
        const std::string name = inQuotes(textOf(found.name));
        require(index < members.size(), ret,
                where + " has the member " + name + " after its last one");
        const std::string wanted = inQuotes(members[index].name);
        ++index;
        require(name == wanted, ret,
                "member " + std::to_string(index) + " of " + where + " is " + name + " where " +
                    wanted + " was expected");
    }
    if (index < members.size()) {
        throw Problem{ret, where + " ends after " + std::to_string(index) + " members where " +
                               inQuotes(members[index].name) + " was expected"};
    }
    const std::string prefix = ret == Ret::BodyShape ? "" : where + ".";
    for (const Member& member : members) {
        checkValue(object[member.name], member.kind, prefix + member.name, ret);
    }
}

void checkChannelInfo(const Value& info, Endpoint endpoint, const std::string& channelId) {
    const auto check = [&info](const std::vector<Member>& members) {
        checkMembers(info, "channel_info", Ret::ChannelInfo, members);
    };
    if (endpoint == Endpoint::PreCode && channelId == kFernoChannelId) {
        require(info.IsString() && info.GetStringLength() == 0, Ret::ChannelInfo,
                "channel_info of channel 1 is not the empty string");
    } else if (endpoint == Endpoint::PreCode) {
        check({{"devinfo", Kind::Text}});
    } else if (channelId == kSteamChannelId) {
        check({{"steamid", Kind::Decimal}, {"ticket", Kind::HexBytes}});
    } else if (channelId == kKzChannelId) {
        check({{"openid", Kind::FullText}, {"ctk", Kind::FullText}});
    } else {
        check({{"openid", Kind::FullText}, {"ctt", Kind::FullText}});
    }
}

void checkDeviceInfo(const Value& info) {
    if (info.IsObject() && info.ObjectEmpty()) {
        return;
    }
    checkMembers(info, "device_info", Ret::DeviceInfo,
                 {{"uuid", Kind::Text},
                  {"device_language", Kind::Text},
                  {"app_version", Kind::Text},
                  {"screen_dpi", Kind::Number},
                  {"resolution", Kind::Text},
                  {"trade_mark", Kind::Text},
                  {"manufacturer", Kind::Text},
                  {"model", Kind::Text},
                  {"apn", Kind::Text},
                  {"ram_info", Kind::Text},
                  {"rom_info", Kind::Text},
                  {"cpu_info", Kind::Text}});
}

std::string jsonOf(const Value& value) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    value.Accept(writer);
    return std::string(buffer.GetString(), buffer.GetSize());
}

} // namespace

BodyContent checkBody(const std::string& body, Endpoint endpoint, const std::string& channelId) {
    rapidjson::Document root;
    parseBody(body, root);
    BodyContent content;
    if (endpoint == Endpoint::Logout) {
        checkMembers(root, "the body", Ret::BodyShape,
                     {{"token", Kind::FullText}, {"openid", Kind::FullText}});
        content.token = textOf(root["token"]);
        content.openid = textOf(root["openid"]);
        return content;
    }
    checkMembers(
        root, "the body", Ret::BodyShape,
        {{"channel_info", Kind::Any}, {"device_info", Kind::Any}, {"channel_dis", Kind::Any}});
    const Value& info = root["channel_info"];
    checkChannelInfo(info, endpoint, channelId);
    checkDeviceInfo(root["device_info"]);
    require(root["channel_dis"] == "Windows", Ret::BodyShape, "channel_dis is not 'Windows'");
    if (endpoint == Endpoint::Login) {
        content.channelInfo = jsonOf(info);
        content.channelUserId = textOf(info[channelId == kSteamChannelId ? "steamid" : "openid"]);
    }
    return content;
}

} // namespace vesk::backend
