#include "checks/query.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <vector>

#include "server/digest.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

struct Parameter {
    std::string_view name;
    std::string_view value;
    bool hasValue;
};

struct Field {
    const char* name;
    std::string Query::*value;
    bool optional;
};

constexpr Field kFields[] = {
    {"channelid", &Query::channelId, false},
    {"gameid", &Query::gameId, false},
    {"os", &Query::os, false},
    {"seq", &Query::seq, true},
    {"ts", &Query::ts, false},
    {"version", &Query::version, false},
    {"sig", &Query::sig, false},
};

std::vector<Parameter> split(std::string_view text) {
    std::vector<Parameter> parameters;
    while (true) {
        const size_t end = text.find('&');
        const std::string_view pair = text.substr(0, end);
        const size_t equals = pair.find('=');
        const bool hasValue = equals != std::string_view::npos;
        parameters.push_back({pair.substr(0, equals),
                              hasValue ? pair.substr(equals + 1) : std::string_view(), hasValue});
        if (end == std::string_view::npos) {
            return parameters;
        }
        text.remove_prefix(end + 1);
    }
}

std::string findRepeated(const std::vector<Parameter>& parameters) {
    for (auto later = parameters.begin(); later != parameters.end(); ++later) {
        const bool repeated = std::any_of(parameters.begin(), later, [&](const Parameter& earlier) {
            return earlier.name == later->name;
        });
        if (repeated) {
            return std::string(later->name);
        }
    }
    return {};
}

Problem shapeProblem(const std::string& msg) {
    return {Ret::QueryShape, "query: " + msg};
}

Problem misplaced(const std::vector<Parameter>& parameters, size_t index, const Field& expected) {
    std::string wanted = inQuotes(expected.name);
    if (index == 3 && std::string_view(expected.name) == "ts") {
        wanted = "'seq' or 'ts'";
    }
    if (index == parameters.size()) {
        return shapeProblem("ends after parameter " + std::to_string(index) + " where " + wanted +
                            " was expected");
    }
    return shapeProblem("parameter " + std::to_string(index + 1) + " is " +
                        inQuotes(parameters[index].name) + " where " + wanted + " was expected");
}

constexpr size_t kSignatureLength = 32;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isNumber(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

bool matchesPattern(const std::string& text, const std::string& pattern) {
    return text.size() == pattern.size() &&
           std::equal(text.begin(), text.end(), pattern.begin(),
                      [](char c, char p) { return p == 'd' ? isDigit(c) : c == p; });
}

std::optional<Problem> checkChannelId(const std::string& id, Endpoint endpoint) {
    const bool messenger = id == kFernoChannelId || id == kKzChannelId;
    switch (endpoint) {
    case Endpoint::PreCode:
        if (!messenger) {
            return Problem{Ret::ChannelId,
                           "channelid is " + inQuotes(id) + "; a pre-code is for 1 or 2 only"};
        }
        break;
    case Endpoint::Login:
        if (!messenger && id != kSteamChannelId) {
            return Problem{Ret::ChannelId, "channelid is " + inQuotes(id) +
                                               "; a login comes from channel 1, 2 or 21"};
        }
        break;
    case Endpoint::Logout:
        if (!isNumber(id)) {
            return Problem{Ret::ChannelId,
                           "channelid is " + inQuotes(id) + ", which is not a channel id"};
        }
        break;
    }
    return std::nullopt;
}

std::optional<Problem> checkTimestamp(const std::string& ts, long long maxSkew, long long now) {
    const auto seconds = numberOf(ts, 0, std::numeric_limits<long long>::max());
    if (!isNumber(ts) || !seconds) {
        return Problem{Ret::TimestampShape,
                       "ts is " + inQuotes(ts) + ", which is not a time in whole Unix seconds"};
    }
    const long long difference = *seconds - now;
    if (std::llabs(difference) > maxSkew) {
        return Problem{Ret::TimestampStale,
                       "ts " + ts + " lies " + std::to_string(std::llabs(difference)) +
                           " seconds " + (difference < 0 ? "before" : "after") +
                           " the backend's clock, more than the " + std::to_string(maxSkew) +
                           " that are allowed"};
    }
    return std::nullopt;
}

} // namespace

std::optional<Problem> readQuery(std::string_view text, Query& query) {
    if (text.empty()) {
        return shapeProblem("the request has none");
    }
    const std::vector<Parameter> parameters = split(text);
    const std::string repeated = findRepeated(parameters);
    if (!repeated.empty()) {
        return shapeProblem("parameter " + inQuotes(repeated) + " stands there more than once");
    }
    size_t index = 0;
    for (const Field& field : kFields) {
        const bool here = index < parameters.size() && parameters[index].name == field.name;
        if (!here && field.optional) {
            continue;
        }
        if (!here) {
            return misplaced(parameters, index, field);
        }
        if (!parameters[index].hasValue) {
            return shapeProblem("parameter " + inQuotes(field.name) + " has no '='");
        }
        if (field.optional && parameters[index].value.empty()) {
            return shapeProblem("parameter " + inQuotes(field.name) +
                                " is empty; an empty one is left out");
        }
        query.*field.value = parameters[index].value;
        ++index;
    }
    if (index < parameters.size()) {
        return shapeProblem("parameter " + inQuotes(parameters[index].name) +
                            " follows 'sig', which must be the last one");
    }
    return std::nullopt;
}

std::optional<Problem> checkQueryValues(const Query& query, Endpoint endpoint,
                                        const CheckSettings& settings, long long now) {
    if (auto problem = checkChannelId(query.channelId, endpoint)) {
        return problem;
    }
    if (query.gameId != settings.gameId) {
        return Problem{Ret::GameId, "gameid is " + inQuotes(query.gameId) +
                                        ", this backend serves game " + inQuotes(settings.gameId)};
    }
    if (query.os != "5") {
        return Problem{Ret::Os, "os is " + inQuotes(query.os) + " where '5' was expected"};
    }
    if (!matchesPattern(query.version, "d.d.ddd.dddd")) {
        return Problem{Ret::Version, "version is " + inQuotes(query.version) +
                                         ", which has not the form d.d.ddd.dddd"};
    }
    return checkTimestamp(query.ts, settings.maxSkew, now);
}

std::optional<Problem> checkSignature(const ReceivedRequest& request, const Query& query,
                                      const CheckSettings& settings) {
    const bool wellFormed = query.sig.size() == kSignatureLength &&
                            std::all_of(query.sig.begin(), query.sig.end(), [](char c) {
                                return isDigit(c) || (c >= 'a' && c <= 'f');
                            });
    if (!wellFormed) {
        return Problem{Ret::SignatureShape, "sig is " + inQuotes(query.sig) +
                                                ", which is not 32 lower-case hexadecimal digits"};
    }
    const std::string signedTarget = request.target.substr(0, request.target.rfind("&sig="));
    if (md5Hex(signedTarget + request.body + settings.key) != query.sig) {
        return Problem{Ret::SignatureWrong,
                       "sig does not match: key, body or query differ from what was signed"};
    }
    return std::nullopt;
}

} // namespace vesk::backend
