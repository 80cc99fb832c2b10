#include "class_factory.h"

#include "open_sdk.h"

namespace vesk::kzsim {

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID id, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (outer != nullptr) {
        return CLASS_E_NOAGGREGATION;
    }
    Braxel::VESK::ComPtr<OpenSDK> made;
    *made.Receive() = OpenSDK::make();
    return made->QueryInterface(id, object);
}

HRESULT ClassFactory::LockServer(BOOL locks) {
    Server::lock(locks != FALSE);
    return S_OK;
}

} // namespace vesk::kzsim
