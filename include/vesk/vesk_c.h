/// @file
/// The SDK in plain C, for engines, scripting languages and compilers other than the library's.
///
/// Texts are UTF-8, NUL-terminated. A text argument may be null, which is the empty text, and is
/// copied; a text of a record is never null. Flags are 1 or 0. Nothing throws. Structs grow at
/// their end only and begin with their size: the library reads no more of a struct of yours than
/// that and writes nothing into it; read a member of a record only when its struct_size covers it.
/// @thread Every function: any with 128 KB of stack. Results arrive as vesk_login_observer says.
#ifndef VESK_VESK_C_H
#define VESK_VESK_C_H

#include <stdint.h>

#include "vesk/veskexport.h"

#ifdef __cplusplus
extern "C" {
#endif
// NOLINTBEGIN(modernize-use-using): C has no other way to name a type

/// Values of ret_code that are errors of the SDK; docs/codes.md says what to do about each.
enum { VESK_SUCCESS = 0, VESK_NO_LOGIN = 1, VESK_NETWORK_ERROR = 4, VESK_SERVER_ERROR = 5 };
enum { VESK_AUTOLOGIN_NOT_ALLOWED = 7, VESK_CHANNEL_INIT_FAILED = 17, VESK_NEED_REALNAME = 20 };
enum { VESK_NETWORK_RESPONSE_ERROR = 24, VESK_NO_STORED_LOGIN = 1001, VESK_TOKEN_EXPIRED = 1002 };
enum { VESK_CHANNEL_LOGIN_FAILED = 9999 };

/// What every result carries; the other records begin with the same members.
typedef struct vesk_base_ret {
    uint32_t struct_size;   ///< size of the whole record, in bytes
    int32_t method_name_id; ///< 112 login, 114 vesk_get_login_ret, 117 logout, 122 QR code
    int32_t ret_code;       ///< VESK_SUCCESS or an error; -1 not set
    int32_t third_code;     ///< a code from outside; -1 when there is none
    const char* ret_msg;    ///< a readable text for ret_code
    const char* third_msg;  ///< the outside party's own text
    const char* extra_json; ///< JSON text or empty
} vesk_base_ret;

/// The result of a login.
typedef struct vesk_login_ret {
    /// As in vesk_base_ret. @{
    uint32_t struct_size;
    int32_t method_name_id, ret_code, third_code;
    const char *ret_msg, *third_msg, *extra_json;
    /// @}
    int64_t token_expire;        ///< absolute expiry in Unix seconds; 0 = unknown
    int32_t first_login;         ///< 1 when this account logged in for the first time
    int32_t gender;              ///< as the backend states it; 0 = unknown
    int32_t real_name_auth;      ///< 1 when the backend demands real-name authentication
    int32_t channel_id;          ///< Ferno 1, KZ 2, Steam 21
    const char* channel;         ///< the channel's name as given to vesk_login
    const char* channel_info;    ///< JSON text of the channel's own data
    const char* openid;          ///< the account's identity, as the backend gave it
    const char* token;           ///< the account's token; a secret, do not log or show it
    const char* reg_channel_dis; ///< the distribution channel of the registration
    const char* user_name;       ///< the player's display name
    const char* birthdate;       ///< as the backend states it
    const char* picture_url;     ///< address of the player's picture
    /// Platform tag for payment and statistics, and its key. @{
    const char *pf, *pf_key; ///@}
} vesk_login_ret;

/// A QR code that the player is to scan.
typedef struct vesk_qr_code_ret {
    /// As in vesk_base_ret. @{
    uint32_t struct_size;
    int32_t method_name_id, ret_code, third_code;
    const char *ret_msg, *third_msg, *extra_json; ///@}
    int32_t channel_id;                           ///< Ferno 1, KZ 2
    int32_t reserved;                             ///< 0
    const char* channel;                          ///< "Ferno" or "KZ"
    const char* qr_code_url;                      ///< address of the QR code image
} vesk_qr_code_ret;

/// The game's functions for results; a null one is not called.
/// @thread The thread that has produced the result: a network thread, a channel component's, or the
///         one that is just inside the SDK. Two may come at once. Hand the result to your own main
///         thread and return soon. Calling the SDK from here is allowed.
/// @lifetime A record and its texts are the library's, valid for the call only: copy what you keep.
/// @errors No exception may leave these functions.
typedef struct vesk_login_observer {
    uint32_t struct_size;                                        ///< sizeof(vesk_login_observer)
    void* user;                                                  ///< handed back with each call
    void (*on_login)(const vesk_login_ret* ret, void* user);     ///< a login ended
    void (*on_base)(const vesk_base_ret* ret, void* user);       ///< a logout ended (117)
    void (*on_qr_code)(const vesk_qr_code_ret* ret, void* user); ///< show it; may come again
} vesk_login_observer;

/// @return the library's version, for example "5.0.000.0005"; valid as long as it is loaded.
VESK_API const char* vesk_version(void);
/// @return the version as a number to compare, each part a byte: 0x05000005.
VESK_API uint32_t vesk_version_number(void);

/// Sets the one observer of the process, be it of C or C++: the last one wins.
/// @param observer null silences all results.
/// @return 1, or 0, and no change, when struct_size ends before on_login or the SDK has ended.
/// @lifetime The struct is copied. `user` and the functions must outlive their registration: set
///           null or another observer, and let calls that are just running return.
VESK_API int32_t vesk_set_login_observer(const vesk_login_observer* observer);

/// Logs the player in. A login that is still running is superseded: only this one is answered.
/// @param channel "KZ", "Ferno" or "Steam", exactly so. Any other name is never answered.
/// @param permissions,sub_channel kept with the request for the channel.
/// @param extra_json a JSON object or empty. A member "password" is replaced by its MD5 digest.
/// @thread on_login may come inside this call, for a failure that is known at once; on_base, too.
/// @errors In on_login: the codes 4, 5, 17, 20, 9999.
VESK_API void vesk_login(const char* channel, const char* permissions, const char* sub_channel,
                         const char* extra_json);

/// Logs in the player that this device remembers ("KZ" only, with a VESK_URL of your own).
/// @errors In on_login: the codes 7, 1001, 9999, -1, and those of vesk_login.
VESK_API void vesk_auto_login(void);

/// Reads the login result that is held now; no network traffic.
/// @param login_ret receives a copy, also for 0; null without memory or SDK. May be null.
/// @return 1 when a login is held; still look at ret_code: an expired one is found, with 1002.
/// @lifetime The copy is yours until vesk_login_ret_free; free it before vesk_uninstall.
/// @errors ret_code 1001 when nothing is stored, -1 when only a remembered player is known.
VESK_API int32_t vesk_get_login_ret(vesk_login_ret** login_ret);

/// Gives back what vesk_get_login_ret has handed out; null is allowed.
VESK_API void vesk_login_ret_free(vesk_login_ret* login_ret);

/// Logs the player out of the channel and, unless told otherwise, of the backend.
/// @param channel empty takes the one that is logged in. An unknown name is never answered.
/// @param sub_channel kept with the request.
/// @param channel_only 1 keeps the stored login and does not tell the backend.
/// @thread on_base comes as soon as the channel has answered, for Steam inside this call.
/// @errors In on_base: 1001, or -1 when only a player remembered from an earlier run is known.
VESK_API void vesk_logout(const char* channel, const char* sub_channel, int32_t channel_only);

/// Ends the SDK; nothing is delivered afterwards, and later calls are log lines only. A library
/// loaded at run time leaves the process on Windows once its requests have ended. May be called
/// from an observer function; what it waits for: UnInstall in vesklogin.h.
VESK_API void vesk_uninstall(void);

/// Not available on this platform: returns at once, 0 or without a result. @{
VESK_API int32_t vesk_switch_user(int32_t use_launch_user);
VESK_API void vesk_bind(const char* channel, const char* permissions, const char* sub_channel,
                        const char* extra_json);
VESK_API void vesk_login_with_confirm_code(int32_t action_type, const char* confirm_code,
                                           const char* extra_json);
VESK_API void vesk_query_user_info(void);
VESK_API void vesk_reset_guest(void); ///@}
// NOLINTEND(modernize-use-using)
#ifdef __cplusplus
}
#endif
#include "vesk/vesk_mainloop.h"
#endif
