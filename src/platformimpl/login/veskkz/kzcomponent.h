#ifndef VESK_PLATFORMIMPL_LOGIN_VESKKZ_KZCOMPONENT_H
#define VESK_PLATFORMIMPL_LOGIN_VESKKZ_KZCOMPONENT_H

#include <cstdint>
#include <memory>
#include <string>

#include "platformimpl/login/veskkz/kzresult.h"

namespace Braxel {
namespace VESK {

/// Hears the events of the KZ component, on any thread.
class KZOpenSDKCallback {
public:
    /// @param result may be null; valid for the call.
    virtual void OnKZOpenSDKCallback(int32_t notifyType, const KZResult* result) = 0;

protected:
    ~KZOpenSDKCallback() = default;
};

/// The KZ messenger's desktop component as the wrapper sees it. Requests answer whether the
/// component took them; what comes of it arrives as an event.
class KZComponent {
public:
    virtual ~KZComponent() = default;

    /// Loads the component from @p path, the full path of its file, and makes its object.
    virtual bool Create(const std::string& path) = 0;

    /// Makes what receives the events and hands them to @p callback.
    virtual bool MakeSink(KZOpenSDKCallback* callback) = 0;

    /// Connects the sink to the events. Events may come before this returns.
    /// @return the component's own result; negative is a failure.
    virtual int32_t Advise() = 0;

    virtual bool Initialize(const std::string& appID, const std::string& appKey) = 0;

    /// Ends the component's work, if it was begun. Events may come all the same, until it has been
    /// unloaded.
    virtual bool ShutDown() = 0;

    /// Gives the component's objects and its file back. No code of it may be on a stack then.
    /// @return false when the file is in the process all the same, and events may still come.
    virtual bool Unload() = 0;

    /// The serial number; empty on a failure.
    virtual std::string GetGenerateSerialNumber() = 0;

    virtual bool LoginByQRCode(const std::string& preCode) = 0;

    /// @return the component's own result; negative is a failure.
    virtual int32_t GetLocalLoginList() = 0;

    virtual bool LoginByLocalLoginUser(const std::string& openid) = 0;
    virtual bool RefreshClientTempKey() = 0;
    virtual void Logout() = 0;
};

/// The component of this platform. Where there is none its Create() fails.
std::unique_ptr<KZComponent> MakeKZComponent();

} // namespace VESK
} // namespace Braxel

#endif
