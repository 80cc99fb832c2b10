#include "checks/requestcheck.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
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
