#ifndef VESK_PLATFORMIMPL_LOGIN_VESKKZ_VESKKZWRAPPER_H
#define VESK_PLATFORMIMPL_LOGIN_VESKKZ_VESKKZWRAPPER_H

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "common/vesksingleton.h"
#include "platformimpl/foundation/os/mutex.h"
#include "platformimpl/login/veskkz/kzcomponent.h"
#include "platformimpl/login/vesknotify.h"

namespace Braxel {
namespace VESK {

/// Drives the KZ component and decodes its events, which come on any thread, also while they are
/// being connected. No lock is held across calls in either direction, but for that connecting.
class VESKKZWrapper : public KZOpenSDKCallback {
public:
    using ComponentMaker = std::function<std::unique_ptr<KZComponent>()>;

    static VESKKZWrapper* GetInstance() { return VESKSingleton<VESKKZWrapper>::GetInstance(); }

    VESKKZWrapper() : mMakeComponent(&MakeKZComponent) {}

    /// Replaces the platform's component. Call it before InitializeOpenSDK().
    void UseComponent(ComponentMaker maker) { mMakeComponent = std::move(maker); }

    /// @return false when it cannot be made, and when it is initialised already.
    bool InitializeOpenSDK(const std::string& appID, const std::string& appKey);

    /// Unloads the component, at once or as soon as no event of it is on a stack any more.
    void UnInitializeOpenSDK();

    /// Who hears the answers; not owned.
    void SetNotify(VESKChannelNotify* notify) { mNotify = notify; }

    // Requests. While the component is not initialised they are logged and do nothing.
    std::string GetGenerateSerialNumber();
    void StartQrCodeLogin(const std::string& preCode);
    bool AutoLogin(const std::string& openid); ///< false when not initialised
    void GetLoginRecord(const std::string& oldToken);
    void Logout();

    void OnKZOpenSDKCallback(int32_t notifyType, const KZResult* result) override;

private:
    std::shared_ptr<KZComponent> Component();

    /// Makes @p component the one in use, unless there is one by now or UnInitializeOpenSDK() was
    /// called since there had been @p uninits of them.
    bool Publish(const std::shared_ptr<KZComponent>& component, unsigned uninits);
    void Release(std::shared_ptr<KZComponent> component);

    ComponentMaker mMakeComponent;
    os::Mutex mMutex;          // held while the sink is connected
    os::Mutex mComponentMutex; // guards the pointer; it and the two below change together
    std::shared_ptr<KZComponent> mComponent;
    std::atomic<bool> mInitialised{false};
    std::atomic<unsigned> mUninits{0};
    std::atomic<VESKChannelNotify*> mNotify{nullptr};
    std::atomic<int> mActiveEvents{0};
};

} // namespace VESK
} // namespace Braxel

#endif
