#ifndef VESK_DEVKIT_BACKEND_CHECKS_REQUESTCHECK_H
#define VESK_DEVKIT_BACKEND_CHECKS_REQUESTCHECK_H

#include <algorithm>
#include <map>
#include <optional>
#include <string>

namespace vesk::backend {

/// The values of "ret" in the answer to a bad request. README.md lists them for the reader.
enum class Ret : int {
    Good = 0,
    QueryShape = 4001,
    ChannelId = 4002,
    GameId = 4003,
    Os = 4004,
    Version = 4005,
    TimestampShape = 4006,
    TimestampStale = 4007,
    SignatureShape = 4008,
    SignatureWrong = 4009,
    BodyNotJson = 4010,
    BodyShape = 4011,
    ChannelInfo = 4012,
    DeviceInfo = 4013,
    UnknownLogin = 4014,
    LogoutChannel = 4015,
    UnknownPath = 4040,
    WrongMethod = 4050,
};

/// The first thing that is wrong with a request; the checks throw it.
struct Problem {
    Ret ret = Ret::Good;
    /// A sentence for the programmer who looks for the mistake. May hold bytes of the request as
    /// they came, so it is not always UTF-8.
    std::string msg = "ok";
};

/// Throws the problem unless the request is good so far.
inline void require(bool isGood, Ret ret, const std::string& msg) {
    if (!isGood) {
        throw Problem{ret, msg};
    }
}

/// The operations that the backend serves.
enum class Endpoint { PreCode, Login, Logout };

/// Channel ids that the backend knows.
constexpr const char* kFernoChannelId = "1";
constexpr const char* kKzChannelId = "2";
constexpr const char* kSteamChannelId = "21";

/// The backend's own identity and its tolerance.
struct CheckSettings {
    std::string gameId = "1106";
    std::string key = "dev-key";
    /// Seconds that "ts" may differ from the backend's clock.
    long long maxSkew = 300;
};

/// A request byte for byte, nothing decoded.
struct ReceivedRequest {
    std::string method;
    /// Path and query as they stood in the request line.
    std::string target;
    /// One that came several times has its values joined.
    std::map<std::string, std::string> headers;
    std::string body;

    /// The target up to the first '?'.
    std::string path() const { return target.substr(0, target.find('?')); }

    /// The target after the first '?', empty when there is none.
    std::string query() const { return target.substr(std::min(target.size(), path().size() + 1)); }
};

/// The values of the query's parameters, as they stood there.
struct Query {
    std::string channelId;
    std::string gameId;
    std::string os;
    /// Empty when the request carries none.
    std::string seq;
    std::string ts;
    std::string version;
    std::string sig;
};

/// What a good body says.
struct BodyContent {
    /// Of a login: "channel_info" as JSON text, and who the player is on the channel.
    std::string channelInfo;
    std::string channelUserId;
    /// Of a logout.
    std::string openid;
    std::string token;
};

/// What the checks found.
struct CheckedRequest {
    Problem problem;
    /// None when the path names no operation.
    std::optional<Endpoint> endpoint;
    /// As far as it could be read.
    Query query;
    BodyContent body;

    bool isGood() const { return problem.ret == Ret::Good; }
};

/// Checks a request: path, method, query order, query values, signature, body, in this order.
/// A pure function: it knows nothing of logins.
/// @param now the backend's clock in Unix seconds
CheckedRequest checkRequest(const ReceivedRequest& request, const CheckSettings& settings,
                            long long now);

} // namespace vesk::backend

#endif
