#ifndef VESK_DEVKIT_BACKEND_CHECKS_PROBLEM_H
#define VESK_DEVKIT_BACKEND_CHECKS_PROBLEM_H

#include <string>

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

} // namespace vesk::backend

#endif
