#include "platformimpl/login/veskkz/kzsink_win.h"

#include <objbase.h>

#include "platformimpl/foundation/os/text.h"

namespace Braxel {
namespace VESK {

IID KZId(const char* text) {
    IID id = {};
    IIDFromString(os::Utf8ToWide(text).c_str(), &id);
    return id;
}

namespace {

/// What an argument means: the one that it points to, if it does; null when there is nothing.
const VARIANT* Meant(const VARIANT& argument) {
    const VARIANT* meant = argument.vt == (VT_VARIANT | VT_BYREF) ? argument.pvarVal : &argument;
    const bool dangles =
        meant == nullptr || ((meant->vt & VT_BYREF) != 0 && meant->byref == nullptr);
    return dangles ? nullptr : meant;
}

template <typename Integer>
HRESULT ReadInteger(const void* data, LONG& number) {
    const Integer value = *static_cast<const Integer*>(data);
    number = static_cast<LONG>(value);
    return number < 0 && value > 0 ? DISP_E_OVERFLOW : S_OK;
}

/// Servers fire what their language calls an integer. Read by hand: systems do not agree on what
/// VariantChangeType() refuses.
HRESULT ReadNumber(const VARIANT& argument, LONG& number) {
    const VARIANT* meant = Meant(argument);
    if (meant == nullptr) {
        return DISP_E_TYPEMISMATCH;
    }
    const void* data = (meant->vt & VT_BYREF) != 0 ? meant->byref : &meant->lVal;
    switch (meant->vt & ~VT_BYREF) {
    case VT_I1:
        return ReadInteger<signed char>(data, number);
    case VT_UI1:
        return ReadInteger<BYTE>(data, number);
    case VT_I2:
        return ReadInteger<SHORT>(data, number);
    case VT_UI2:
        return ReadInteger<USHORT>(data, number);
    case VT_I4:
    case VT_INT:
        return ReadInteger<LONG>(data, number);
    case VT_UI4:
    case VT_UINT:
        return ReadInteger<ULONG>(data, number);
    default:
        return DISP_E_TYPEMISMATCH;
    }
}

/// Nothing, and an argument that was left out, are a result that is not there.
HRESULT ReadResult(const VARIANT& argument, const IID& propertiesId,
                   ComPtr<IKZProperties>& result) {
    const VARIANT* meant = Meant(argument);
    if (meant == nullptr) {
        return DISP_E_TYPEMISMATCH;
    }
    IUnknown* object = nullptr;
    switch (meant->vt) {
    case VT_EMPTY:
    case VT_NULL:
        return S_OK;
    case VT_ERROR:
        return meant->scode == DISP_E_PARAMNOTFOUND ? S_OK : DISP_E_TYPEMISMATCH;
    case VT_UNKNOWN:
    case VT_DISPATCH:
        object = meant->punkVal;
        break;
    case VT_UNKNOWN | VT_BYREF:
    case VT_DISPATCH | VT_BYREF:
        object = *meant->ppunkVal;
        break;
    default:
        return DISP_E_TYPEMISMATCH;
    }
    if (object == nullptr) {
        return S_OK;
    }
    return SUCCEEDED(
               object->QueryInterface(propertiesId, reinterpret_cast<void**>(result.Receive()))) &&
                   result
               ? S_OK
               : DISP_E_TYPEMISMATCH;
}

} // namespace

CSink::CSink(KZOpenSDKCallback* callback)
    : mInterfaceId(KZId(VESK_KZ_IID_EVENTS)), mDispInterfaceId(KZId(VESK_KZ_IID_DISPEVENTS)),
      mPropertiesId(KZId(VESK_KZ_IID_PROPERTIES)), mCallback(callback) {
    // A component may keep its listeners in the global interface table, or hand them from one
    // apartment to another. There is no proxy for these interfaces, and a call must not wait until
    // the thread of some apartment looks at its messages.
    CoCreateFreeThreadedMarshaler(static_cast<IKZOpenSDKEvents*>(this), mMarshaler.Receive());
}

HRESULT CSink::QueryInterface(REFIID id, void** object) {
    if (object != nullptr && (id == IID_IDispatch || id == mDispInterfaceId)) {
        *object = static_cast<IDispatch*>(this);
        AddRef();
        return S_OK;
    }
    if (object != nullptr && id == IID_IMarshal && mMarshaler) {
        return mMarshaler->QueryInterface(id, object);
    }
    return ComObject::QueryInterface(id, object);
}

HRESULT CSink::GetTypeInfoCount(UINT* count) {
    if (count == nullptr) {
        return E_POINTER;
    }
    *count = 0;
    return S_OK;
}

HRESULT CSink::GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** info) {
    if (info != nullptr) {
        *info = nullptr;
    }
    return DISP_E_BADINDEX;
}

HRESULT CSink::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID /*locale*/,
                             DISPID* ids) {
    if (reserved != IID_NULL) {
        return DISP_E_UNKNOWNINTERFACE;
    }
    if (names == nullptr || ids == nullptr) {
        return E_POINTER;
    }
    bool allKnown = true;
    for (UINT i = 0; i < count; ++i) {
        const bool known = i == 0 && names[i] != nullptr && lstrcmpiW(names[i], L"OnNotify") == 0;
        ids[i] = known ? VESK_KZ_DISPID_NOTIFY : DISPID_UNKNOWN;
        allKnown = allKnown && known;
    }
    return allKnown ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT CSink::Invoke(DISPID member, REFIID reserved, LCID /*locale*/, WORD flags,
                      DISPPARAMS* parameters, VARIANT* answer, EXCEPINFO* /*exception*/,
                      UINT* wrongArgument) {
    if (reserved != IID_NULL) {
        return DISP_E_UNKNOWNINTERFACE;
    }
    if (member != VESK_KZ_DISPID_NOTIFY || (flags & DISPATCH_METHOD) == 0) {
        return DISP_E_MEMBERNOTFOUND;
    }
    if (parameters == nullptr) {
        return E_POINTER;
    }
    if (parameters->cNamedArgs != 0) {
        return DISP_E_NONAMEDARGS;
    }
    if (parameters->cArgs != 2 || parameters->rgvarg == nullptr) {
        return DISP_E_BADPARAMCOUNT;
    }
    if (answer != nullptr) {
        VariantInit(answer);
    }
    LONG notifyType = 0;
    ComPtr<IKZProperties> result;
    UINT argument = 1; // they come last one first
    HRESULT read = ReadNumber(parameters->rgvarg[argument], notifyType);
    if (SUCCEEDED(read)) {
        argument = 0;
        read = ReadResult(parameters->rgvarg[argument], mPropertiesId, result);
    }
    if (FAILED(read)) {
        if (wrongArgument != nullptr) {
            *wrongArgument = argument;
        }
        return read;
    }
    return OnNotify(notifyType, result.Get());
}

HRESULT CSink::OnNotify(LONG notifyType, IKZProperties* result) {
    if (result == nullptr) {
        mCallback->OnKZOpenSDKCallback(notifyType, nullptr);
    } else {
        const KZComResult decoded(result);
        mCallback->OnKZOpenSDKCallback(notifyType, &decoded);
    }
    return S_OK;
}

int32_t KZComResult::GetInt(const wchar_t* name, int32_t defValue) const {
    LONG value = 0;
    return SUCCEEDED(mProperties->GetInt(name, &value)) ? static_cast<int32_t>(value) : defValue;
}

std::string KZComResult::GetText(const wchar_t* name) const {
    Bstr text;
    return SUCCEEDED(mProperties->GetText(name, text.Receive())) ? os::WideToUtf8(text.Text())
                                                                 : std::string();
}

int32_t KZComResult::GetListSize(const wchar_t* name) const {
    LONG size = 0;
    return SUCCEEDED(mProperties->GetListSize(name, &size)) ? static_cast<int32_t>(size) : -1;
}

std::unique_ptr<KZResult> KZComResult::GetListEntry(const wchar_t* name, int32_t index) const {
    ComPtr<IKZProperties> entry;
    if (FAILED(mProperties->GetListEntry(name, index, entry.Receive())) || !entry) {
        return nullptr;
    }
    return std::make_unique<KZComResult>(entry);
}

} // namespace VESK
} // namespace Braxel
