/// @file
/// vesk_mainloop.h for C++17, included by vesk.hpp. Throws only std::bad_alloc.
#ifndef VESK_VESK_MAINLOOP_HPP
#define VESK_VESK_MAINLOOP_HPP

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "vesk/vesk.hpp"

namespace vesk {
/// The SDK has changed the held login by itself: a new token (retCode 0), or 1002: it has ended.
struct Refreshed {
    LoginRet login; ///< as it is now
};

/// How things stand; the values are those of vesk_mainloop.h.
enum class Stage : int32_t {
    signedOut = VESK_SIGNED_OUT,
    loggingIn = VESK_LOGGING_IN,
    waitingForScan = VESK_WAITING_FOR_SCAN,
    signedIn = VESK_SIGNED_IN,
    expired = VESK_EXPIRED
};

/// As vesk_login_state.
struct State {
    /// As there. @{
    Stage stage = Stage::signedOut;
    uint64_t request = 0;
    int64_t tokenExpire = 0;
    std::string channel, openid; ///@}
};

/// One object of several functions: `Overloaded{[](const LoginRet&, uint64_t) {}, ...}`.
template <typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
/// Of what its arguments are.
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

/// The mode of vesk_queue_results, on while it lives. One at a time; the operations of vesk.hpp run
/// on the SDK's worker meanwhile, and an Observer hears nothing.
/// @thread Every function: any. None waits but waitIdle.
class MainLoop {
public:
    MainLoop() : mIsOn(vesk_queue_results(1) != 0) {}

    /// Cancels the running login, drops the results that wait, and goes back. Waits for nothing: a
    /// logout that is under way goes on. A login that has succeeded stays held.
    ~MainLoop() {
        if (mIsOn) {
            vesk_cancel_login();
            vesk_queue_results(0);
            vesk_result* next = nullptr;
            while (vesk_next_result(&next) != 0) {
                vesk_result_free(next);
            }
        }
    }
    MainLoop(const MainLoop&) = delete;

    /// @return false when the mode could not be switched on: for want of memory or of a thread, or
    ///         after uninstall. Results then go to the Observer.
    bool isOn() const { return mIsOn; }

    /// Hands the results that wait to @p visitor, oldest first, inside this call, until none is
    /// left. The visitor may call everything of the SDK. When it throws, the others go on waiting.
    /// @param visitor called with a LoginRet, a BaseRet (a logout), a QrCodeRet or a Refreshed, and
    ///        with the uint64_t number of the request that it answers. Its function for BaseRet
    ///        also gets a LoginRet or QrCodeRet that it has none for.
    /// @return how many results there were.
    /// @errors std::bad_alloc, when a result cannot be copied: that one is lost.
    template <typename Visitor>
    size_t poll(Visitor&& visitor) {
        size_t count = 0;
        while (std::optional<Result> result = take()) {
            std::visit([&](const auto& ret) { visitor(ret, result->request); }, result->ret);
            ++count;
        }
        return count;
    }

    /// As the function of vesk_mainloop.h. @{
    bool cancelLogin() { return vesk_cancel_login() != 0; }
    void setLoginTimeout(std::chrono::milliseconds limit) {
        vesk_set_login_timeout(clamped(limit));
    }
    bool waitIdle(std::chrono::milliseconds atMost) { return vesk_wait_idle(clamped(atMost)) != 0; }
    State state() const {
        vesk_login_state now = {};
        now.struct_size = sizeof now;
        vesk_state(&now);
        return {static_cast<Stage>(now.state), now.request, now.token_expire, now.channel,
                now.openid};
    } ///@}

private:
    struct Result {
        uint64_t request;
        std::variant<LoginRet, BaseRet, QrCodeRet, Refreshed> ret;
    };

    static std::optional<Result> take() {
        for (;;) {
            vesk_result* next = nullptr;
            if (vesk_next_result(&next) == 0) {
                return std::nullopt;
            }
            const std::shared_ptr<vesk_result> owner(next, &vesk_result_free);
            switch (next->kind) {
            case VESK_RESULT_LOGIN:
                return Result{next->request, LoginRet(*next->login)};
            case VESK_RESULT_BASE:
                return Result{next->request, BaseRet(*next->base)};
            case VESK_RESULT_QR_CODE:
                return Result{next->request, QrCodeRet(*next->qr_code)};
            case VESK_RESULT_REFRESHED:
                return Result{next->request, Refreshed{LoginRet(*next->login)}};
            default: // of a newer library
                break;
            }
        }
    }

    static uint32_t clamped(std::chrono::milliseconds time) {
        return static_cast<uint32_t>(std::clamp<int64_t>(time.count(), 0, UINT32_MAX));
    }

    const bool mIsOn;
};

/// What a result's codes mean and what to do about it, as vesk_describe.
inline vesk_advice describe(const BaseRet& ret) {
    vesk_advice advice = {};
    advice.struct_size = sizeof advice;
    vesk_describe(ret.retCode, ret.thirdCode, &advice);
    return advice;
}
} // namespace vesk
#endif
