/// @file
/// The SDK for a game's main loop: nothing is called from foreign threads, no call takes a frame,
/// and every login ends. Call vesk_queue_results(1) once, then vesk_next_result in each frame.
///
/// The rules of vesk_c.h hold. No function waits for the network, the disk, a channel's component
/// or another thread's work unless its description says so. After vesk_uninstall each returns 0.
/// @thread Every function: any.
#ifndef VESK_VESK_MAINLOOP_H
#define VESK_VESK_MAINLOOP_H

#include "vesk/vesk_c.h"

#ifdef __cplusplus
extern "C" {
#endif
// NOLINTBEGIN(modernize-use-using): C has no other way to name a type

/// Values of ret_code that only this mode has. @{
enum { VESK_LOGIN_CANCELLED = 10001, VESK_LOGIN_TIMED_OUT = 10002, VESK_UNKNOWN_CHANNEL = 10003 };
enum { VESK_LOGIN_OVERTAKEN = 10004 }; ///@}

/// The kinds of results.
enum {
    VESK_RESULT_LOGIN = 1,    ///< a login has ended; `login` is set
    VESK_RESULT_BASE = 2,     ///< a logout has ended; `base` is set
    VESK_RESULT_QR_CODE = 3,  ///< a picture to show until the login ends; `qr_code` is set
    VESK_RESULT_REFRESHED = 4 ///< a new token (0), or it has expired or is lost (1002); `login`
};

/// A result that waited. The members that its kind does not name are null.
typedef struct vesk_result {
    uint32_t struct_size; ///< size of the record, in bytes
    int32_t kind;         ///< VESK_RESULT_LOGIN and so on
    uint64_t request; ///< what it answers, as in vesk_login_state; 0 for a call before this mode
    const vesk_login_ret* login;     ///< a login's result, or the refreshed login
    const vesk_base_ret* base;       ///< a logout's result
    const vesk_qr_code_ret* qr_code; ///< the picture
} vesk_result;

/// From now on results wait for vesk_next_result, and an observer is not called. vesk_login,
/// vesk_auto_login and vesk_logout return at once and run in their order on a thread of the SDK;
/// each gets one result. 0 goes back: what was asked for meanwhile is still answered here.
/// @return 1, or 0 and no change without memory or a thread.
VESK_API int32_t vesk_queue_results(int32_t on);

/// Takes the oldest result.
/// @param result yours until vesk_result_free; null when there is none.
/// @return 1, or 0 when there is none.
/// @note Results of logins and logouts wait as long as it takes. Of QR codes and of refreshed
///       tokens the newest waits alone: it replaces the older one that nobody has taken.
///       When 4096 results wait, further logouts are not answered.
VESK_API int32_t vesk_next_result(vesk_result** result);

/// Gives a result back, before vesk_uninstall; null is allowed.
VESK_API void vesk_result_free(vesk_result* result);

/// Ends the running login with VESK_LOGIN_CANCELLED, at once. What comes later for it reaches
/// nobody and logs nobody in; when the backend has already logged the player in, the SDK logs the
/// player out there again. In this mode only.
/// @return 1, or 0 when no login is running: none was, or its result waits already.
/// @note Who was signed in before vesk_login is signed out by it, also when it was cancelled.
VESK_API int32_t vesk_cancel_login(void);

/// How long a login of this mode may take until it ends with VESK_LOGIN_TIMED_OUT, as if it had
/// been cancelled. For logins that begin later.
/// @param milliseconds 0 is for ever; 300,000 (five minutes) unless set.
VESK_API void vesk_set_login_timeout(uint32_t milliseconds);

/// Waits until nothing of the SDK is under way: calls of this mode, requests to the backend,
/// logouts, deliveries. A login that waits for its player's scan is not waited for, nor is a result
/// that nobody takes. In every mode; for "log out and quit". Not from inside an observer function.
/// @param milliseconds how long at most.
/// @return 1 when nothing is under way, 0 when the time is over.
VESK_API int32_t vesk_wait_idle(uint32_t milliseconds);

/// The values of vesk_login_state's `state`.
enum {
    VESK_SIGNED_OUT = 0,
    VESK_LOGGING_IN = 1,
    VESK_WAITING_FOR_SCAN = 2,
    VESK_SIGNED_IN = 3,
    VESK_EXPIRED = 4 ///< the held login's token is past its time
};

/// How things stand.
typedef struct vesk_login_state {
    uint32_t struct_size; ///< set it to sizeof(vesk_login_state) before the call
    int32_t state;        ///< VESK_SIGNED_OUT and so on
    uint64_t request;     ///< the number of the latest login or logout of this mode; 0: none yet
    int64_t token_expire; ///< Unix seconds; 0 = unknown, or nobody is signed in
    char channel[16];     ///< of the running login, else of the held one; or empty
    char openid[256];     ///< of the held login; or empty. A longer one is cut
    uint64_t running;     ///< the number of the login that runs; 0: none does
} vesk_login_state;

/// Tells how things stand, without a line in the log: fit for each frame.
/// @return 1, or 0 and no change when struct_size ends before `token_expire`.
VESK_API int32_t vesk_state(vesk_login_state* state);

/// Who or what is behind a code.
enum {
    VESK_CAUSE_NONE = 0, ///< nothing is wrong
    VESK_CAUSE_CONFIGURATION = 1,
    VESK_CAUSE_NETWORK = 2,
    VESK_CAUSE_BACKEND = 3,
    VESK_CAUSE_CHANNEL_COMPONENT = 4,
    VESK_CAUSE_PLAYER = 5,
    VESK_CAUSE_CLOCK = 6,
    VESK_CAUSE_PROGRAMMING = 7
};

/// What a pair of codes means and what to do about it. English, for logs and developers: sentences
/// that begin small and have no full stop. They are the library's own and stay as long as it does.
typedef struct vesk_advice {
    uint32_t struct_size;    ///< set it to sizeof(vesk_advice) before the call
    int32_t cause;           ///< VESK_CAUSE_CONFIGURATION and so on
    int32_t can_retry;       ///< 1 when trying again without a change can help
    uint32_t retry_after_ms; ///< how long to wait before that
    const char* cause_name;  ///< "configuration", "channel component", ...
    const char* meaning;     ///< what has happened
    const char* remedy;      ///< what to do; empty when nothing is
} vesk_advice;

/// Explains the codes of a result, by the more exact of the two. In every mode, and also after
/// vesk_uninstall.
/// @return 1, or 0 for a ret_code that the SDK does not give (the advice then says so); 0 and no
///         change when struct_size ends before `remedy` does.
VESK_API int32_t vesk_describe(int32_t ret_code, int32_t third_code, vesk_advice* advice);
// NOLINTEND(modernize-use-using)
#ifdef __cplusplus
}
#endif
#endif
