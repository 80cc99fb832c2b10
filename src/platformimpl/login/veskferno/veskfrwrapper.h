#ifndef VESK_PLATFORMIMPL_LOGIN_VESKFERNO_VESKFRWRAPPER_H
#define VESK_PLATFORMIMPL_LOGIN_VESKFERNO_VESKFRWRAPPER_H

#include <atomic>
#include <string>

#include "foundation/lifecycle/veskcomponentlife.h"
#include "module/veskmutex.h"
#include "module/vesksingleton.h"
#include "platformimpl/foundation/os/dynamiclibrary.h"
#include "platformimpl/login/messenger/vesknotify.h"
#include "platformimpl/login/veskferno/veskfrcomponent.h"

namespace Braxel {
namespace VESK {

/// The Ferno messenger's desktop library, loaded from the SDK's own folder. Its callbacks come on
/// threads of its own; no lock is held across calls in either direction.
class VESKFRWrapper {
public:
    static VESKFRWrapper* GetInstance() { return VESKSingleton<VESKFRWrapper>::GetInstance(); }

    /// Starts the library, once: another thread that asks meanwhile is kept waiting.
    /// @return false when it cannot be loaded, and when it is initialised already.
    bool InitializeOpenSDK();
    bool IsInitialised() const { return mLife.IsRunning(); }

    /// Ends the library for good. It is unloaded as soon as nothing of it can come back.
    void UnInitializeOpenSDK();

    /// Who hears the answers; not owned.
    void SetNotify(VESKChannelNotify* notify) { mNotify = notify; }

    /// Deliberate: a missing library or export is logged and answered by nothing.
    /// @return false then.
    bool Login(const std::string& appID, const std::string& preCode, const std::string& scope);
    void GetLoginRecord();
    void Logout();

private:
    friend class VESKSingleton<VESKFRWrapper>;
    friend class VESKFRCallbacks;
    VESKFRWrapper() = default;

    os::DynamicLibrary Library();
    void Publish(const os::DynamicLibrary& library, FrCallbackTable* table);
    void Depart();
    bool Stop();
    bool Unload();

    VESKMutex mMutex; // guards the library and the table that it has
    os::DynamicLibrary mLibrary;
    FrCallbackTable* mCallbacks = nullptr;
    std::atomic<VESKChannelNotify*> mNotify{nullptr};
    VESKComponentLife mLife; // last: it waits for its thread, which uses the others
};

} // namespace VESK
} // namespace Braxel

#endif
