#ifndef VESK_PLATFORMIMPL_LOGIN_VESKKZ_VESKKZWRAPPER_H
#define VESK_PLATFORMIMPL_LOGIN_VESKKZ_VESKKZWRAPPER_H

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "foundation/lifecycle/veskcomponentlife.h"
#include "module/veskmutex.h"
#include "module/vesksingleton.h"
#include "platformimpl/login/messenger/vesknotify.h"
#include "platformimpl/login/veskkz/kzcomponent.h"

namespace Braxel {
namespace VESK {

/// Drives the KZ component and decodes its events, which come on any thread, also while they are
/// being connected. No lock is held across calls in either direction, but for that connecting.
class VESKKZWrapper : public KZOpenSDKCallback {
public:
    using ComponentMaker = std::function<std::unique_ptr<KZComponent>()>;

    static VESKKZWrapper* GetInstance() { return VESKSingleton<VESKKZWrapper>::GetInstance(); }

    /// @param rest how long the ended component has to be silent before it is unloaded
    explicit VESKKZWrapper(VESKComponentLife::Milliseconds rest = VESKComponentLife::kRest)
        : mMakeComponent(&MakeKZComponent), mLife(rest) {}

    /// Replaces the platform's component. Call it before InitializeOpenSDK().
    void UseComponent(ComponentMaker maker) { mMakeComponent = std::move(maker); }

    /// Starts the component, once: another thread that asks meanwhile is kept waiting.
    /// @return false when it cannot be made, and when it is initialised already.
    bool InitializeOpenSDK(const std::string& appID, const std::string& appKey);
    bool IsInitialised() const { return mLife.IsRunning(); }

    /// Ends the component for good. It is unloaded as soon as nothing of it can come back.
    void UnInitializeOpenSDK();

    /// What connecting to the component's events has answered; negative: none will ever come, nor
    /// any answer to a request. 0 while there is no component.
    int32_t AdviseResult() const { return IsInitialised() ? mAdvised.load() : 0; }

    /// Who hears the answers; not owned.
    void SetNotify(VESKChannelNotify* notify) { mNotify = notify; }

    // Requests. While the component is not initialised they are logged and do nothing.
    std::string GetGenerateSerialNumber();
    /// @return whether the component has taken it.
    bool StartQrCodeLogin(const std::string& preCode);
    bool AutoLogin(const std::string& openid); ///< false when not initialised
    void GetLoginRecord(const std::string& oldToken);
    void Logout();

    void OnKZOpenSDKCallback(int32_t notifyType, const KZResult* result) override;

private:
    /// A call into the component, while it is initialised.
    class Call {
    public:
        explicit Call(VESKKZWrapper& wrapper);
        explicit operator bool() const { return mComponent != nullptr; }
        KZComponent* operator->() const { return mComponent.get(); }

    private:
        const VESKComponentLife::Call mCall;
        std::shared_ptr<KZComponent> mComponent;
    };

    bool StartComponent(KZComponent& component, const std::string& appID,
                        const std::string& appKey);
    bool LoginByLocalLoginUser(const std::string& openid);
    void Depart(const std::shared_ptr<KZComponent>& component, bool wasRunning);

    ComponentMaker mMakeComponent;
    VESKMutex mMutex;          // held while the sink is connected
    VESKMutex mComponentMutex; // guards the pointer
    std::shared_ptr<KZComponent> mComponent;
    std::atomic<int32_t> mAdvised{0};
    std::atomic<VESKChannelNotify*> mNotify{nullptr};
    VESKComponentLife mLife; // last: it waits for its thread, which uses the others
};

} // namespace VESK
} // namespace Braxel

#endif
