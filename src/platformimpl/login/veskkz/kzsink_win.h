#ifndef VESK_PLATFORMIMPL_LOGIN_VESKKZ_KZSINK_WIN_H
#define VESK_PLATFORMIMPL_LOGIN_VESKKZ_KZSINK_WIN_H

#include "module/veskmodule.h"
#include "platformimpl/login/veskkz/kzcomponent.h"
#include "thirdsdk/kz/comsupport.h"
#include "thirdsdk/kz/kzopensdk.h"

namespace Braxel {
namespace VESK {

/// Receives the events of the KZ component, through its own interface or as the dispinterface, and
/// hands them on. It belongs to no apartment: whatever marshals it gives out the object itself.
class CSink : public ComObject<IKZOpenSDKEvents>, public IDispatch {
public:
    explicit CSink(KZOpenSDKCallback* callback);

    /// @return false when the system cannot make what it needs; it must not be advised then.
    bool IsComplete() const { return static_cast<bool>(mMarshaler); }

    ULONG STDMETHODCALLTYPE AddRef() override { return ComObject::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return ComObject::Release(); }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count,
                                            LCID locale, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* answer, EXCEPINFO* exception,
                                     UINT* wrongArgument) override;

    HRESULT STDMETHODCALLTYPE OnNotify(LONG notifyType, IKZProperties* result) override;

protected:
    const IID& InterfaceId() const override { return mInterfaceId; }

private:
    const IID mInterfaceId;
    const IID mDispInterfaceId;
    const IID mPropertiesId;
    ComPtr<IUnknown> mMarshaler; // aggregated
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
