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

CSink::CSink(KZOpenSDKCallback* callback)
    : mInterfaceId(KZId(VESK_KZ_IID_EVENTS)), mCallback(callback) {}

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
