#ifndef VESK_THIRDSDK_KZ_COMSUPPORT_H
#define VESK_THIRDSDK_KZ_COMSUPPORT_H

#include <atomic>
#include <oaidl.h>
#include <oleauto.h>
#include <string>
#include <utility>

namespace Braxel {
namespace VESK {

/// Owns one reference on a COM object.
template <typename T>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(const ComPtr& other) : mObject(other.mObject) {
        if (mObject != nullptr) {
            mObject->AddRef();
        }
    }
    ComPtr& operator=(ComPtr other) {
        std::swap(mObject, other.mObject);
        return *this;
    }
    ~ComPtr() { Reset(); }

    T* Get() const { return mObject; }
    T* operator->() const { return mObject; }
    explicit operator bool() const { return mObject != nullptr; }

    void Reset() {
        T* object = mObject;
        mObject = nullptr;
        if (object != nullptr) {
            object->Release();
        }
    }

    /// For a call that gives out a reference.
    T** Receive() {
        Reset();
        return &mObject;
    }

private:
    T* mObject = nullptr;
};

/// Owns a BSTR.
class Bstr {
public:
    Bstr() = default;
    explicit Bstr(const std::wstring& text)
        : mText(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(mText); }

    BSTR Get() const { return mText; }
    BSTR* Receive() { return &mText; }
    std::wstring Text() const {
        return mText == nullptr ? std::wstring() : std::wstring(mText, SysStringLen(mText));
    }

private:
    BSTR mText = nullptr;
};

/// Owns a VARIANT.
class Variant {
public:
    explicit Variant(LONG number) {
        VariantInit(&mValue);
        mValue.vt = VT_I4;
        mValue.lVal = number;
    }
    explicit Variant(bool flag) {
        VariantInit(&mValue);
        mValue.vt = VT_BOOL;
        mValue.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
    }
    explicit Variant(const std::wstring& text) {
        VariantInit(&mValue);
        mValue.vt = VT_BSTR;
        mValue.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    ~Variant() { VariantClear(&mValue); }

    const VARIANT& Get() const { return mValue; }

private:
    VARIANT mValue;
};

/// A counted COM object: implements IUnknown for a class of one interface. Made with one
/// reference, which belongs to the maker.
template <typename Interface>
class ComObject : public Interface {
public:
    ComObject() = default;
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    ULONG STDMETHODCALLTYPE AddRef() override { return ++mReferences; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --mReferences;
        if (left == 0) {
            delete this;
        }
        return left;
    }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        if (object == nullptr) {
            return E_POINTER;
        }
        *object = nullptr;
        if (id != IID_IUnknown && id != InterfaceId()) {
            return E_NOINTERFACE;
        }
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }

protected:
    virtual ~ComObject() = default;
    virtual const IID& InterfaceId() const = 0;

private:
    std::atomic<ULONG> mReferences{1};
};

} // namespace VESK
} // namespace Braxel

#endif
