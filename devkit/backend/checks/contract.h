#ifndef VESK_DEVKIT_BACKEND_CHECKS_CONTRACT_H
#define VESK_DEVKIT_BACKEND_CHECKS_CONTRACT_H

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace vesk::backend {

/// The values of "ret" in the answer to a bad request. README.md lists them for the reader.
enum class Ret : int {
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

/// One finding: the first thing that is wrong with a request.
struct Problem {
    Ret ret;
    /// A sentence for the programmer who looks for the mistake. May hold bytes of the request as
    /// they came, so it is not always UTF-8.
    std::string msg;
};

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
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;

    /// The target up to the first '?'.
    std::string path() const { return target.substr(0, target.find('?')); }

    /// The target after the first '?', empty when there is none.
    std::string query() const { return target.substr(std::min(target.size(), path().size() + 1)); }
};

} // namespace vesk::backend

#endif
