#include "checks/querycheck.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

#include "server/digest.h"
#include "server/jsontext.h"

namespace vesk::backend {

namespace {

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
                           "channelid is " + quoted(id) + "; a pre-code is for 1 or 2 only"};
        }
        break;
    case Endpoint::Login:
        if (!messenger && id != kSteamChannelId) {
            return Problem{Ret::ChannelId, "channelid is " + quoted(id) +
                                               "; a login comes from channel 1, 2 or 21"};
        }
        break;
    case Endpoint::Logout:
        if (!isNumber(id)) {
            return Problem{Ret::ChannelId,
                           "channelid is " + quoted(id) + ", which is not a channel id"};
        }
        break;
    }
    return std::nullopt;
}

std::optional<Problem> checkTimestamp(const std::string& ts, long long maxSkew, long long now) {
    long long seconds = 0;
    const char* end = ts.data() + ts.size();
    const auto result = std::from_chars(ts.data(), end, seconds);
    if (!isNumber(ts) || result.ec != std::errc()) {
        return Problem{Ret::TimestampShape,
                       "ts is " + quoted(ts) + ", which is not a time in whole Unix seconds"};
    }
    const long long difference = seconds - now;
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

std::optional<Problem> checkQueryValues(const Query& query, Endpoint endpoint,
                                        const CheckSettings& settings, long long now) {
    if (auto problem = checkChannelId(query.channelId, endpoint)) {
        return problem;
    }
    if (query.gameId != settings.gameId) {
        return Problem{Ret::GameId, "gameid is " + quoted(query.gameId) +
                                        ", this backend serves game " + quoted(settings.gameId)};
    }
    if (query.os != "5") {
        return Problem{Ret::Os, "os is " + quoted(query.os) + " where '5' was expected"};
    }
    if (!matchesPattern(query.version, "d.d.ddd.dddd")) {
        return Problem{Ret::Version, "version is " + quoted(query.version) +
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
        return Problem{Ret::SignatureShape, "sig is " + quoted(query.sig) +
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
