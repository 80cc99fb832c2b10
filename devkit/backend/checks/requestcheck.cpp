#include "checks/requestcheck.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <vector>

#include "common/text.h"
#include "server/json.h"
#include "server/system.h"

namespace vesk::backend {

namespace {

constexpr size_t kSignatureLength = 32;

std::optional<Endpoint> endpointOf(const std::string& path) {
    static const std::pair<const char*, Endpoint> kPaths[] = {
        {"/v2/auth/pcprecode", Endpoint::PreCode},
        {"/v2/auth/login", Endpoint::Login},
        {"/v2/auth/logout", Endpoint::Logout},
    };
    for (const auto& [served, endpoint] : kPaths) {
        if (path == served) {
            return endpoint;
        }
    }
    return std::nullopt;
}

struct Parameter {
    std::string name;
    std::optional<std::string> value;
};

struct Field {
    std::string name;
    std::string Query::*value;
    bool optional = false;
};

const Field kFields[] = {
    {"channelid", &Query::channelId},
    {"gameid", &Query::gameId},
    {"os", &Query::os},
    {"seq", &Query::seq, true},
    {"ts", &Query::ts},
    {"version", &Query::version},
    {"sig", &Query::sig},
};

void requireShape(bool isGood, const std::string& msg) {
    require(isGood, Ret::QueryShape, "query: " + msg);
}

std::vector<Parameter> splitQuery(const std::string& text) {
    std::vector<Parameter> parameters;
    for (const std::string& pair : devkit::split(text, '&')) {
        const size_t equals = pair.find('=');
        Parameter parameter{pair.substr(0, equals), std::nullopt};
        if (equals != std::string::npos) {
            parameter.value = pair.substr(equals + 1);
        }
        for (const Parameter& earlier : parameters) {
            requireShape(earlier.name != parameter.name,
                         "parameter " + inQuotes(parameter.name) + " stands there more than once");
        }
        parameters.push_back(parameter);
    }
    return parameters;
}

[[noreturn]] void refuseOrder(const std::vector<Parameter>& parameters, size_t index,
                              const Field& expected) {
    const bool seqMayCome = index == 3 && expected.name == "ts";
    const std::string wanted =
        " where " + (seqMayCome ? "'seq' or 'ts'" : inQuotes(expected.name)) + " was expected";
    requireShape(index < parameters.size(),
                 "ends after parameter " + std::to_string(index) + wanted);
    throw Problem{Ret::QueryShape, "query: parameter " + std::to_string(index + 1) + " is " +
                                       inQuotes(parameters[index].name) + wanted};
}

void readQuery(const std::string& text, Query& query) {
    requireShape(!text.empty(), "the request has none");
    const std::vector<Parameter> parameters = splitQuery(text);
    size_t index = 0;
    for (const Field& field : kFields) {
        const bool here = index < parameters.size() && parameters[index].name == field.name;
        if (!here && field.optional) {
            continue;
        }
        if (!here) {
            refuseOrder(parameters, index, field);
        }
        const auto& value = parameters[index].value;
        requireShape(value.has_value(), "parameter " + inQuotes(field.name) + " has no '='");
        requireShape(!field.optional || !value->empty(),
                     "parameter " + inQuotes(field.name) + " is empty; an empty one is left out");
        query.*field.value = *value;
        ++index;
    }
    if (index < parameters.size()) {
        requireShape(false, "parameter " + inQuotes(parameters[index].name) +
                                " follows 'sig', which must be the last one");
    }
}

bool isNumber(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), devkit::isDigit);
}

bool matchesPattern(const std::string& text, const std::string& pattern) {
    return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                      [](char c, char p) { return p == 'd' ? devkit::isDigit(c) : c == p; });
}

void checkChannelId(const std::string& id, Endpoint endpoint) {
    const bool messenger = id == kFernoChannelId || id == kKzChannelId;
    const std::string found = "channelid is " + inQuotes(id);
    switch (endpoint) {
    case Endpoint::PreCode:
        require(messenger, Ret::ChannelId, found + "; a pre-code is for 1 or 2 only");
        break;
    case Endpoint::Login:
        require(messenger || id == kSteamChannelId, Ret::ChannelId,
                found + "; a login comes from channel 1, 2 or 21");
        break;
    case Endpoint::Logout:
        require(isNumber(id), Ret::ChannelId, found + ", which is not a channel id");
        break;
    }
}

void checkTimestamp(const std::string& ts, long long maxSkew, long long now) {
    const auto seconds = numberOf(ts, 0, std::numeric_limits<long long>::max());
    require(isNumber(ts) && seconds, Ret::TimestampShape,
            "ts is " + inQuotes(ts) + ", which is not a time in whole Unix seconds");
    const long long difference = *seconds - now;
    require(std::llabs(difference) <= maxSkew, Ret::TimestampStale,
            "ts " + ts + " lies " + std::to_string(std::llabs(difference)) + " seconds " +
                (difference < 0 ? "before" : "after") + " the backend's clock, more than the " +
                std::to_string(maxSkew) + " that are allowed");
}

/// The message never tells the signature that would have been right.
void checkSignature(const ReceivedRequest& request, const std::string& sig,
                    const std::string& key) {
    const bool wellFormed =
        sig.size() == kSignatureLength && std::all_of(sig.begin(), sig.end(), [](char c) {
            return devkit::isDigit(c) || (c >= 'a' && c <= 'f');
        });
    require(wellFormed, Ret::SignatureShape,
            "sig is " + inQuotes(sig) + ", which is not 32 lower-case hexadecimal digits");
    // Over the bytes as they came, without the last parameter.
    const std::string signedTarget = request.target.substr(0, request.target.rfind("&sig="));
    require(md5Hex(signedTarget + request.body + key) == sig, Ret::SignatureWrong,
            "sig does not match: key, body or query differ from what was signed");
}

/// Checks that the query holds channelid, gameid, os, [seq], ts, version and sig in exactly this
/// order and nothing else, then the values, then the signature.
void checkQuery(const ReceivedRequest& request, Endpoint endpoint, const CheckSettings& settings,
                long long now, Query& query) {
    readQuery(request.query(), query);
    checkChannelId(query.channelId, endpoint);
    require(query.gameId == settings.gameId, Ret::GameId,
            "gameid is " + inQuotes(query.gameId) + ", this backend serves game " +
                inQuotes(settings.gameId));
    require(query.os == "5", Ret::Os, "os is " + inQuotes(query.os) + " where '5' was expected");
    require(matchesPattern(query.version, "d.d.ddd.dddd"), Ret::Version,
            "version is " + inQuotes(query.version) + ", which has not the form d.d.ddd.dddd");
    checkTimestamp(query.ts, settings.maxSkew, now);
    checkSignature(request, query.sig, settings.key);
}

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

/// Checks the body's shape: JSON, exactly the expected members in their order, each of its type.
/// @param channelId the query's channel id, which decides what "channel_info" must hold
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

} // namespace

CheckedRequest checkRequest(const ReceivedRequest& request, const CheckSettings& settings,
                            long long now) {
    CheckedRequest checked;
    checked.endpoint = endpointOf(request.path());
    try {
        require(checked.endpoint.has_value(), Ret::UnknownPath,
                "there is no path " + inQuotes(request.path()));
        require(request.method == "POST", Ret::WrongMethod,
                "method is " + inQuotes(request.method) + " where 'POST' was expected");
        checkQuery(request, *checked.endpoint, settings, now, checked.query);
        checked.body = checkBody(request.body, *checked.endpoint, checked.query.channelId);
    } catch (const Problem& problem) {
        checked.problem = problem;
    }
    return checked;
}

} // namespace vesk::backend
