#ifndef VESK_CINTERFACE_VESKCOBSERVER_H
#define VESK_CINTERFACE_VESKCOBSERVER_H

#include "module/veskmutex.h"
#include "module/vesksingleton.h"
#include "vesk/vesk_c.h"
#include "vesk/veskloginobserver.h"

namespace Braxel {
namespace VESK {

/// Stands before the facade for the observer of a program that uses the plain C interface. There
/// is one, for good: a thread that delivers may still hold it when it has long been replaced.
class VESKCObserver final : public VESKLoginObserver {
public:
    static VESKCObserver* GetInstance() { return VESKSingleton<VESKCObserver>::GetInstance(); }

    /// Keeps a copy of as much of @p observer as its size covers; null keeps nothing. False, and
    /// no change, when the size does not even cover the first function.
    bool Set(const vesk_login_observer* observer);

    void OnLoginRetNotify(const VESKLoginRet& ret) override;
    void OnBaseRetNotify(const VESKBaseRet& ret) override;
    void OnQrCodeRetNotify(const VESKQrCodeRet& ret) override;

private:
    friend class VESKSingleton<VESKCObserver>;
    VESKCObserver() = default;

    vesk_login_observer Current();

    VESKMutex mMutex;
    vesk_login_observer mObserver = {};
};

} // namespace VESK
} // namespace Braxel

#endif
