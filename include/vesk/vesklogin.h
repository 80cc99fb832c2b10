/// @file
/// Everything a game needs: include this file, link VESKCore, call VESKLogin.
#ifndef VESK_VESKLOGIN_H
#define VESK_VESKLOGIN_H

#include "vesk/veskerror.h"
#include "vesk/veskexport.h"
#include "vesk/veskloginobserver.h"
#include "vesk/veskret.h"
#include "vesk/veskstring.h"

namespace Braxel {
namespace VESK {

/// The SDK's facade. No operation waits for the network: results arrive through the observer. The
/// channel's component is called on the caller's thread and may take its time, above all while it
/// starts, which is inside Login for Steam and KZ and inside AutoLogin. Every call writes lines
/// into the log, so it takes as long as the disk does (docs/main-loop.md). Nothing throws. A thread
/// that calls needs 128 KB of stack (docs/architecture.md).
class VESK_API VESKLogin {
public:
    /// Sets the one observer of the process. Call it before the first login.
    /// @param observer may be null, which silences all results. The last pointer wins.
    /// @thread Any.
    /// @lifetime The observer must outlive its registration. To retire it, set null and let calls
    ///           that are just running return before you delete it.
    static void SetLoginObserver(VESKLoginObserver* observer);

    /// Logs the player in. A login that is still running is superseded: only this one is answered.
    /// @param channel "KZ", "Ferno" or "Steam", exactly so. Any other name is never answered.
    /// @param permissions kept with the request for the channel.
    /// @param subChannel kept with the request for the channel.
    /// @param extraJson a JSON object or empty. A member "password" is replaced by its MD5 digest.
    /// @thread Any. May take long: call it from a worker thread, or use vesk.hpp's main loop.
    ///         OnLoginRetNotify comes on a network or channel thread; for a failure that is
    ///         known at once (the Steam interface does not start) it comes inside this call. So
    ///         does OnBaseRetNotify, with 117 and -1, when all that is known is a player
    ///         remembered from an earlier run.
    /// @errors Arrive in OnLoginRetNotify: NETWORK_ERROR, SERVER_ERROR, CHANNEL_INIT_FAILED,
    ///         NEED_REALNAME, CHANNEL_LOGIN_FAILED.
    static void Login(const String& channel, const String& permissions, const String& subChannel,
                      const String& extraJson);

    /// Logs in the player that this device remembers, without a QR code. Only for "KZ", and only
    /// when VESK_URL is set to a backend of your own (docs/configuration.md).
    /// @thread Any. May take long: call it from a worker thread, or use vesk.hpp's main loop.
    ///         Results as for Login.
    /// @errors Arrive in OnLoginRetNotify: AUTOLOGIN_NOT_ALLOWED, NO_STORED_LOGIN,
    ///         CHANNEL_LOGIN_FAILED, and those of Login. `retCode` and `thirdCode` are -1 when the
    ///         device's memory of the player is damaged.
    static void AutoLogin();

    /// Reads the login result that is held now; no network traffic.
    /// @param loginRet is filled in either case, for false as far as something is known.
    /// @return true when a login is held. Still look at `retCode`: an expired login is found, with
    ///         VESKError::TOKEN_EXPIRED.
    /// @thread Any. Writes into the log: what a frame may ask is vesk_state of vesk_mainloop.h.
    /// @errors `retCode` NO_STORED_LOGIN when nothing is stored, -1 (as `thirdCode`) when only a
    ///         player remembered from an earlier run is known.
    static bool GetLoginRet(VESKLoginRet& loginRet);

    /// Logs the player out of the channel and, unless told otherwise, of the backend.
    /// @param channel the channel to log out of; empty takes the one that is logged in. Any unknown
    ///        name is never answered.
    /// @param subChannel kept with the request.
    /// @param channelOnly true keeps the stored login and does not tell the backend.
    /// @thread Any. May take long: call it from a worker thread, or use vesk.hpp's main loop.
    ///         OnBaseRetNotify comes as soon as the channel has answered, for Steam inside
    ///         this call; the backend's answer is not waited for.
    /// @errors Arrive in OnBaseRetNotify with methodNameID 117: NO_STORED_LOGIN, or -1 when only a
    ///         remembered player from an earlier run is known.
    static void Logout(const String& channel, const String& subChannel, bool channelOnly);

    /// Not available on this platform.
    /// @return false, always.
    static bool SwitchUser(bool useLaunchUser);

    /// Ends the SDK: stops its background work, closes the channel components and unloads this
    /// library from the process. It goes when the game has loaded it at run time; a DLL that the
    /// program links, and the library on Linux, stay loaded and do nothing more.
    ///
    /// May be called from an observer method. It waits for observer methods that other threads are
    /// in and for calls of theirs into a channel's component, for 0.75 seconds at most each, and
    /// while a component stops. Any other work ends on its own threads and reaches nobody.
    ///
    /// A library that goes gives back one reference of the game's; a FreeLibrary of the game's own
    /// is not needed and does no harm. It goes when what is still running has ended: a request can
    /// keep it for its time-out, 15 seconds, and until then LoadLibrary gives the ended one back.
    /// To load it again wait until GetModuleHandle finds it no more (docs/integration.md).
    /// @thread Any; may take seconds, so not between two frames.
    ///         After it has returned do not call the SDK again: the code may be gone, and as
    ///         long as it is there a call is one error line of the log and nothing else.
    static void UnInstall();

    /// Not available on this platform: returns at once, without a result.
    static void Bind(const String& channel, const String& permissions, const String& subChannel,
                     const String& extraJson);

    /// Not available on this platform: returns at once, without a result.
    static void LoginWithConfirmCode(int actionType, const String& confirmCode,
                                     const String& extraJson);

    /// Not available on this platform: returns at once, without a result.
    static void QueryUserInfo();

    /// Not available on this platform: returns at once, without a result.
    static void ResetGuest();
};

} // namespace VESK
} // namespace Braxel

#endif
