#include "resultcodes.h"

namespace vesk::devkit {

namespace {

constexpr int64_t kSuccess = 0;
constexpr int64_t kNetworkError = 4;
constexpr int64_t kServerError = 5;
constexpr int64_t kNeedRealName = 20;
constexpr int64_t kLogoutLost = 24;
constexpr int64_t kChannelFailed = 9999;

struct Row {
    int64_t code;
    const char* meaning;
    const char* remedy;
};

constexpr Row kResults[] = {
    {kSuccess, "it worked", ""},
    {-1, "nothing is known but a player's name, left by an earlier run", "log in"},
    {1, "no login is held", "log in"},
    {kNetworkError, "the backend could not be reached, or failed before it answered",
     "look at the outside code; let the player try again"},
    {kServerError, "the backend refused, or sent something unusable",
     "ask the backend's operator what its code means; trying again rarely helps"},
    {7, "automatic login is not possible with this VESK_URL, or the remembered player is not of KZ",
     "call Login"},
    {17, "the channel could not be started, and the backend was not asked",
     "Steam: start the Steam client, and the game from it. KZ: its component's maker. The log says "
     "which it was"},
    {kNeedRealName, "the account has to pass real-name authentication first; the login is not held",
     "send the player to the authentication, then log in again"},
    {kLogoutLost, "the logout did not reach the backend",
     "none is needed: the player is logged out"},
    {1001, "no login is held and none is remembered", "log in"},
    {1002, "the login that is held has expired", "log in again"},
    {kChannelFailed,
     "the messenger did not log the player in: its code has expired or was denied, it has logged "
     "the player out, or its component is missing",
     "let the player try again; at once and without a QR code: put the component beside the SDK"},
};

constexpr Row kCurl[] = {
    {1, "the scheme of an address is not allowed, or the answer is no HTTP",
     "look at VESK_URL, and at what answers there"},
    {2, "no request could be started", "look at the memory and the number of threads"},
    {3, "the address is malformed",
     "look at VESK_URL and VESK_GAME_ID in VESKConfig.ini, and whether that file is there"},
    {5, "the name of the proxy is not known", "look at the proxy's settings and the network"},
    {6, "the name of the backend's computer is not known", "look at VESK_URL and the network"},
    {7, "nobody accepts the connection",
     "start the backend or the proxy; look at the port in VESK_URL"},
    {18, "the answer ended too early", "the backend's operator"},
    {23, "the answer is too large", "the backend's operator"},
    {27, "memory ran out, or a header line is too large", "look at the memory, ask the operator"},
    {28, "the time is over", "look at the network, the backend and the proxy"},
    {35, "no TLS connection came about",
     "https needs a port that speaks TLS, below 1.3 for a Windows before 11 and for Wine"},
    {52, "the connection was closed without an answer",
     "a port that speaks TLS needs https in VESK_URL"},
    {56, "the connection broke, or the proxy refused", "look at the network, proxy and backend"},
    {60, "the backend's certificate is not trusted",
     "look at cacert.pem, the host name in VESK_URL and the clock; vesk-doctor tells them apart"},
    {77, "cacert.pem cannot be read", "put the backend's authorities beside the SDK as cacert.pem"},
};

template <size_t N>
const Row* find(const Row (&rows)[N], int64_t code) {
    for (const Row& row : rows) {
        if (row.code == code) {
            return &row;
        }
    }
    return nullptr;
}

Explanation of(const std::string& who, int64_t code, const char* meaning, const char* remedy) {
    return {who + " " + std::to_string(code) + ", " + meaning, remedy};
}

Explanation ofHttp(int64_t status) {
    const char* const who = "the answer has HTTP status";
    if (status < 400) {
        return of(who, status, "which is no answer to a request",
                  "set VESK_URL to the address that answers by itself");
    }
    if (status < 500) {
        return of(who, status, "which refuses the request",
                  "look at VESK_URL, and at what answers there");
    }
    return of(who, status, "a fault of the backend or of what stands before it",
              "the backend's operator; let the player try again");
}

Explanation ofTransport(int64_t code) {
    if (code == 4) {
        return of(
            "the SDK reports", code, "the request waited too long for its turn",
            "VESK_HTTP_TIMEOUT must be a number of seconds above 0; let the player try again");
    }
    if (code == 833) {
        return of("the SDK reports", code, "a success without an HTTP status",
                  "VESK_URL must begin with https://");
    }
    if (code >= 100) {
        return ofHttp(code);
    }
    const Row* row = find(kCurl, code);
    return row == nullptr ? of("libcurl reports", code, "the transport failed", "")
                          : of("libcurl reports", code, row->meaning, row->remedy);
}

} // namespace

Explanation explainResult(int64_t retCode) {
    const Row* row = find(kResults, retCode);
    if (row != nullptr) {
        return {row->meaning, row->remedy};
    }
    return {"a code that this program does not know", "docs/codes.md"};
}

Explanation explainOutside(int64_t retCode, int64_t thirdCode) {
    if (thirdCode == kNobody || retCode == kSuccess || retCode == kNeedRealName) {
        return {};
    }
    if (retCode == kNetworkError || retCode == kLogoutLost) {
        return ofTransport(thirdCode);
    }
    if (retCode != kServerError) {
        return of("the channel answered", thirdCode, "a code of its own", "");
    }
    if (thirdCode == 0) {
        return of("the backend answered", thirdCode, "but with nothing usable",
                  "the backend's operator: the answer is empty, no JSON, or lacks something");
    }
    if (thirdCode >= 4001 && thirdCode <= 4050) {
        return of("the backend answered", thirdCode, "a refusal of its own",
                  "a dev backend's codes are in devkit/backend/README.md");
    }
    return of("the backend answered", thirdCode, "a refusal of its own", "");
}

std::string remedyFor(int64_t retCode, int64_t thirdCode) {
    std::string remedy = explainOutside(retCode, thirdCode).remedy;
    return remedy.empty() ? explainResult(retCode).remedy : remedy;
}

} // namespace vesk::devkit
