#ifndef VESK_PLATFORMIMPL_LOGIN_VESKKZ_KZSINK_WIN_H
#define VESK_PLATFORMIMPL_LOGIN_VESKKZ_KZSINK_WIN_H

#include "module/veskmodule.h"
#include "platformimpl/login/veskkz/kzcomponent.h"
#include "thirdsdk/kz/comsupport.h"
#include "thirdsdk/kz/kzopensdk.h"

namespace Braxel {
namespace VESK {

/// Receives the events of the KZ component and hands them on.
class CSink : public ComObject<IKZOpenSDKEvents> {
public:
    explicit CSink(KZOpenSDKCallback* callback);

    HRESULT STDMETHODCALLTYPE OnNotify(LONG notifyType, IKZProperties* result) override;

protected:
    const IID& InterfaceId() const override { return mInterfaceId; }

private:
    const IID mInterfaceId;
    // The component may let go of it long after it was told to: until then its code must be there.
    const VESKModule::Use mUse;
    KZOpenSDKCallback* const mCallback;
};

/// The property bag that comes with an event, behind the wrapper's own interface.
class KZComResult : public KZResult {
public:
    /// @param properties must outlive the object, unless @p owner holds it.
    explicit KZComResult(IKZProperties* properties) : mProperties(properties) {}
    explicit KZComResult(const ComPtr<IKZProperties>& owner)
        : mOwner(owner), mProperties(owner.Get()) {}

    int32_t GetInt(const wchar_t* name, int32_t defValue) const override;
    std::string GetText(const wchar_t* name) const override;
    int32_t GetListSize(const wchar_t* name) const override;
    std::unique_ptr<KZResult> GetListEntry(const wchar_t* name, int32_t index) const override;

private:
    ComPtr<IKZProperties> mOwner;
    IKZProperties* const mProperties;
};

/// An id in its text form, "{...}".
IID KZId(const char* text);

} // namespace VESK
} // namespace Braxel

#endif
