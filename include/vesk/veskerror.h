/// @file
/// The codes that arrive in `retCode`.
#ifndef VESK_VESKERROR_H
#define VESK_VESKERROR_H

#include <cstdint>

namespace Braxel {
namespace VESK {

/// Return codes of the SDK. Compare them with `retCode`: `ret.retCode != VESKError::SUCCESS`.
///
/// A code says which stage failed; `thirdCode` says what the outside party answered: the backend's
/// "ret", a libcurl code, an HTTP status, 833 for an HTTP status of 0, or 4 for a request that
/// waited too long for a free connection. docs/codes.md tells what to do about each.
struct VESKError {
    /// The operation succeeded.
    static constexpr int32_t SUCCESS = 0;
    /// No login is held. Reserved: no operation of this platform answers with it.
    static constexpr int32_t NO_LOGIN = 1;
    /// The backend could not be reached, or answered with an HTTP failure; see `thirdCode`.
    static constexpr int32_t NETWORK_ERROR = 4;
    /// The backend refused, or its answer was empty or unusable; its own code is in `thirdCode`.
    static constexpr int32_t SERVER_ERROR = 5;
    /// Automatic login is not available for this configuration or channel.
    static constexpr int32_t AUTOLOGIN_NOT_ALLOWED = 7;
    /// The Steam client interface could not be started, and the backend was not contacted; or the
    /// events of KZ's component cannot be received.
    static constexpr int32_t CHANNEL_INIT_FAILED = 17;
    /// The account must pass real-name authentication before it may play.
    static constexpr int32_t NEED_REALNAME = 20;
    /// The transport of a request other than a login failed.
    static constexpr int32_t NETWORK_RESPONSE_ERROR = 24;
    /// No login result is stored on this device.
    static constexpr int32_t NO_STORED_LOGIN = 1001;
    /// The stored login result is past its expiry.
    static constexpr int32_t TOKEN_EXPIRED = 1002;
    /// The messenger reported a failed QR or automatic login.
    static constexpr int32_t CHANNEL_LOGIN_FAILED = 9999;

    // From here on the codes are the SDK's own and no backend's. Only results that wait for a main
    // loop have them (vesk_mainloop.h); no observer hears one.

    /// The game has taken the login back.
    static constexpr int32_t LOGIN_CANCELLED = 10001;
    /// The login has not ended in its time.
    static constexpr int32_t LOGIN_TIMED_OUT = 10002;
    /// There is no channel of that name.
    static constexpr int32_t UNKNOWN_CHANNEL = 10003;
    /// A newer login has begun before this one had ended.
    static constexpr int32_t LOGIN_OVERTAKEN = 10004;
};

} // namespace VESK
} // namespace Braxel

#endif
