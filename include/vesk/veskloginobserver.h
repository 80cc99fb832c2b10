/// @file
/// The interface through which a game hears results.
#ifndef VESK_VESKLOGINOBSERVER_H
#define VESK_VESKLOGINOBSERVER_H

#include "vesk/veskexport.h"
#include "vesk/veskret.h"

namespace Braxel {
namespace VESK {

/// Implemented by the game and handed to VESKLogin::SetLoginObserver.
///
/// @thread Each method runs on the thread that produced the result: a network thread, a channel
///         component's thread, or, for a failure that is known at once, the thread that is just
///         inside VESKLogin. Two results may arrive at the same time on two threads. Hand the
///         result to your own main thread and return soon. Calling VESKLogin from here is allowed.
/// @lifetime The record belongs to the library and is valid for the call only: copy what you keep.
///           The library keeps a raw pointer to the observer and never deletes it.
/// @errors Do not throw out of these methods; an exception is caught and lost.
class VESK_API VESKLoginObserver {
public:
    virtual ~VESKLoginObserver();

    /// A login ended: check `ret.retCode` against VESKError. Each VESKLogin::Login is answered at
    /// most once, and only the newest one is answered at all.
    virtual void OnLoginRetNotify(const VESKLoginRet& ret) = 0;

    /// A logout ended (`methodNameID` 117).
    virtual void OnBaseRetNotify(const VESKBaseRet& ret) = 0;

    /// Show this QR code to the player. It may come again with a fresh address during one login.
    virtual void OnQrCodeRetNotify(const VESKQrCodeRet& ret) = 0;
};

} // namespace VESK
} // namespace Braxel

#endif
