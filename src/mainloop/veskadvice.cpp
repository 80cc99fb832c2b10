#include "mainloop/veskadvice.h"

#include <algorithm>
#include <iterator>

#include "vesk/vesk_mainloop.h"
#include "vesk/veskerror.h"

namespace Braxel {
namespace VESK {

namespace {

using Source = VESKAdvice::Source;

constexpr auto kResult = Source::kResult;
constexpr auto kSdk = Source::kSdk;
constexpr auto kCurl = Source::kCurl;
constexpr auto kHttp = Source::kHttp;
constexpr auto kBackend = Source::kBackend;

constexpr int32_t kNever = -1; ///< trying again does not help
constexpr int32_t kNow = 0;
constexpr int32_t kBroken = 2000;  ///< a connection that broke is mostly better the next time
constexpr int32_t kAway = 10000;   ///< a network or a server that comes back does so in seconds
constexpr int32_t kFaulty = 30000; ///< no crowd of games may stand at the door of a sick backend
constexpr int32_t kCrowded = 60000;

constexpr VESKAdvice One(Source source, int64_t code, int32_t cause, int32_t retryAfter,
                         const char* meaning, const char* remedy) {
    return {source, code, code, cause, retryAfter, meaning, remedy};
}

constexpr const char* kAskOperator = "ask the backend's operator; let the player try again";

// The first row that fits counts, so what is for the others stands behind. docs/codes.md has these
// rows in this order.
constexpr VESKAdvice kTable[] = {
    One(kResult, VESKError::SUCCESS, VESK_CAUSE_NONE, kNever, "it worked", ""),
    One(kResult, -1, VESK_CAUSE_PLAYER, kNever,
        "nothing is known but a player's name, left by an earlier run", "log in"),
    One(kResult, VESKError::NO_LOGIN, VESK_CAUSE_PLAYER, kNever, "no login is held", "log in"),
    One(kResult, VESKError::NETWORK_ERROR, VESK_CAUSE_NETWORK, kAway,
        "the backend could not be reached, or failed before it answered",
        "look at thirdCode; let the player try again"),
    One(kResult, VESKError::SERVER_ERROR, VESK_CAUSE_BACKEND, kNever,
        "the backend refused, or sent something unusable",
        "ask the backend's operator what thirdCode means; trying again rarely helps"),
    One(kResult, VESKError::AUTOLOGIN_NOT_ALLOWED, VESK_CAUSE_PROGRAMMING, kNever,
        "automatic login is not possible with this VESK_URL, or the remembered player is not of KZ",
        "call Login"),
    One(kResult, VESKError::CHANNEL_INIT_FAILED, VESK_CAUSE_CHANNEL_COMPONENT, kNever,
        "the channel could not be started, and the backend was not asked for a login",
        "Steam: start the Steam client, and the game from it. KZ, Ferno: put the component beside the "
        "SDK, or ask its maker. The log says which it was"),
    One(kResult, VESKError::NEED_REALNAME, VESK_CAUSE_PLAYER, kNever,
        "the account has to pass real-name authentication first; the login is not held",
        "send the player to the authentication, then log in again"),
    One(kResult, VESKError::NETWORK_RESPONSE_ERROR, VESK_CAUSE_NETWORK, kNever,
        "the logout did not reach the backend", "none is needed: the player is logged out"),
    One(kResult, VESKError::NO_STORED_LOGIN, VESK_CAUSE_PLAYER, kNever,
        "no login is held and none is remembered", "log in"),
    One(kResult, VESKError::TOKEN_EXPIRED, VESK_CAUSE_PLAYER, kNever,
        "the login that is held has expired", "log in again"),
    One(kResult, VESKError::CHANNEL_LOGIN_FAILED, VESK_CAUSE_PLAYER, kNow,
        "the messenger did not log the player in: its code has expired or was denied, it has "
        "logged the player out, or its component is missing",
        "let the player try again; if it fails at once, before a QR code, put the component beside "
        "the SDK"),
    One(kResult, VESKError::LOGIN_CANCELLED, VESK_CAUSE_PLAYER, kNow,
        "the game has taken the login back", "offer a login"),
    One(kResult, VESKError::LOGIN_TIMED_OUT, VESK_CAUSE_PLAYER, kNow,
        "the login has not ended in its time",
        "let the player try again; a scan takes a player minutes: vesk_set_login_timeout"),
    One(kResult, VESKError::UNKNOWN_CHANNEL, VESK_CAUSE_PROGRAMMING, kNever,
        "there is no channel of that name", "channels are named KZ, Ferno and Steam, exactly so"),
    One(kResult, VESKError::LOGIN_OVERTAKEN, VESK_CAUSE_PLAYER, kNever,
        "a newer login has begun before this one had ended",
        "none is needed: the newer one is answered"),
    {kResult, INT64_MIN, INT64_MAX, VESK_CAUSE_PROGRAMMING, kNever,
     "a code that this version of the SDK does not give",
     "look at where the game has it from; a newer SDK's are in its docs/codes.md"},
    One(kSdk, 4, VESK_CAUSE_NETWORK, kAway, "the request waited too long for its turn",
        "VESK_HTTP_TIMEOUT must be a number of seconds above 0; let the player try again"),
    One(kSdk, 833, VESK_CAUSE_CONFIGURATION, kNever, "a success without an HTTP status",
        "VESK_URL must begin with https://"),
    One(kCurl, 1, VESK_CAUSE_CONFIGURATION, kNever,
        "a redirect leads from https to something else, the answer is no HTTP, or the scheme of "
        "VESK_URL is not known",
        "look at VESK_URL, and at what answers there"),
    One(kCurl, 2, VESK_CAUSE_PROGRAMMING, kAway, "no request could be started",
        "look at the game's memory and its number of threads"),
    One(kCurl, 3, VESK_CAUSE_CONFIGURATION, kNever,
        "the address, or one of a redirect, is malformed",
        "look for a blank in VESK_URL and VESK_GAME_ID, and whether VESKConfig.ini is there"),
    One(kCurl, 5, VESK_CAUSE_NETWORK, kAway, "the name of the proxy is not known, or malformed",
        "look at the proxy's settings and the network"),
    One(kCurl, 6, VESK_CAUSE_NETWORK, kAway, "the name of the backend's computer is not known",
        "look at VESK_URL and the network"),
    One(kCurl, 7, VESK_CAUSE_NETWORK, kAway, "nobody accepts the connection",
        "start the backend or the proxy; look at the port in VESK_URL, and for a firewall"),
    One(kCurl, 18, VESK_CAUSE_BACKEND, kBroken, "the answer ended too early", kAskOperator),
    One(kCurl, 23, VESK_CAUSE_BACKEND, kNever,
        "the answer is larger than 4 MiB, or its headers and trailers are larger than 1 MiB",
        "ask the backend's operator"),
    One(kCurl, 27, VESK_CAUSE_PROGRAMMING, kBroken,
        "memory ran out while the answer was handled, or one header line is above 100 KB",
        "look at the game's memory, ask the backend's operator"),
    One(kCurl, 28, VESK_CAUSE_NETWORK, kAway,
        "the time is over: 15 seconds, or 16 while a proxy refuses without an end",
        "look at the network, the backend and the proxy"),
    One(kCurl, 35, VESK_CAUSE_NETWORK, kBroken, "no TLS connection came about",
        "https needs a port that speaks TLS, below 1.3 for a Windows before 11 and for Wine"),
    One(kCurl, 52, VESK_CAUSE_BACKEND, kBroken, "the connection was closed without an answer",
        "a port that speaks TLS needs https in VESK_URL"),
    One(kCurl, 56, VESK_CAUSE_NETWORK, kBroken,
        "the connection broke, a proxy refused an https address, or the answer has malformed "
        "chunks or headers above 300 KB",
        "look at the network, the proxy and the backend"),
    One(kCurl, 60, VESK_CAUSE_CONFIGURATION, kNever, "the backend's certificate is not trusted",
        "look at cacert.pem, the host name in VESK_URL and the clock; vesk-doctor tells them "
        "apart"),
    One(kCurl, 77, VESK_CAUSE_CONFIGURATION, kNever, "cacert.pem cannot be read",
        "put the backend's authorities beside the SDK as cacert.pem, a plain file of at most 1 "
        "MiB"),
    {kCurl, 1, 99, VESK_CAUSE_NETWORK, kAway, "the transport failed", ""},
    One(kHttp, 407, VESK_CAUSE_NETWORK, kNever, "the proxy wants to know who asks",
        "look at the proxy's settings"),
    One(kHttp, 429, VESK_CAUSE_BACKEND, kCrowded, "too many requests have come",
        "let the player try again later"),
    {kHttp, 100, 399, VESK_CAUSE_CONFIGURATION, kNever, "what came is no answer to the request",
     "set VESK_URL to the address that answers by itself"},
    {kHttp, 400, 499, VESK_CAUSE_CONFIGURATION, kNever, "the request is refused",
     "look at VESK_URL, which ends without a path and a slash, and at what answers there"},
    {kHttp, 500, 999, VESK_CAUSE_BACKEND, kFaulty,
     "the backend, or what stands before it, has a fault", kAskOperator},
    One(kBackend, 0, VESK_CAUSE_BACKEND, kNever, "the answer is empty, no JSON, or lacks something",
        "ask the backend's operator; the login page of a public network answers so, too"),
    One(kBackend, 4003, VESK_CAUSE_CONFIGURATION, kNever, "the request is refused",
        "from a dev backend: VESK_GAME_ID is not the one that it was started with"),
    One(kBackend, 4007, VESK_CAUSE_CLOCK, kNever, "the request is refused",
        "from a dev backend: set the computer's clock; the time zone does not matter"),
    One(kBackend, 4009, VESK_CAUSE_CONFIGURATION, kNever, "the request is refused",
        "from a dev backend: VESK_SDK_KEY is not the one that it was started with, or a proxy "
        "changes the request"),
    One(kBackend, 4012, VESK_CAUSE_CHANNEL_COMPONENT, kNever, "the request is refused",
        "from a dev backend: the channel gave no id, or a messenger no token"),
    {kBackend, 4001, 4050, VESK_CAUSE_BACKEND, kNever, "the request is refused",
     "a dev backend's codes are in devkit/backend/README.md"},
    {kBackend, INT64_MIN, INT64_MAX, VESK_CAUSE_BACKEND, kNever, "the request is refused", ""},
};

/// The first row of one of these sources that the code belongs to.
const VESKAdvice* Find(Source first, Source last, int64_t code) {
    const auto* const found =
        std::find_if(std::begin(kTable), std::end(kTable), [&](const VESKAdvice& row) {
            return row.source >= first && row.source <= last && row.first <= code &&
                   code <= row.last;
        });
    return found == std::end(kTable) ? nullptr : found;
}

} // namespace

const char* VESKAdvice::CauseName() const {
    // In the order of their values.
    static constexpr const char* kNames[] = {"none",    "configuration",     "network",
                                             "backend", "channel component", "player",
                                             "clock",   "programming"};
    return kNames[cause];
}

const char* VESKAdvice::SourceName() const {
    static constexpr const char* kNames[] = {"the SDK answered", "the SDK reports",
                                             "libcurl reports", "the answer has HTTP status",
                                             "the backend answered"};
    return kNames[static_cast<int>(source)];
}

const VESKAdvice& VESKAdvice::OfResult(int64_t retCode) {
    return *Find(kResult, kResult, retCode);
}

const VESKAdvice* VESKAdvice::OfOutside(int64_t retCode, int64_t thirdCode) {
    if (retCode == VESKError::NETWORK_ERROR || retCode == VESKError::NETWORK_RESPONSE_ERROR) {
        return Find(kSdk, kHttp, thirdCode);
    }
    const bool isAnswer = retCode == VESKError::SERVER_ERROR && thirdCode != kNobody;
    return isAnswer ? Find(kBackend, kBackend, thirdCode) : nullptr;
}

const VESKAdvice& VESKAdvice::Of(int64_t retCode, int64_t thirdCode) {
    const VESKAdvice* outside = OfOutside(retCode, thirdCode);
    return outside != nullptr && *outside->remedy != '\0' ? *outside : OfResult(retCode);
}

std::pair<const VESKAdvice*, const VESKAdvice*> VESKAdvice::Table() {
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace VESK
} // namespace Braxel
