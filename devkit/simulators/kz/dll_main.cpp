#include "call_log.h"
#include "class_factory.h"
#include "ids.h"
#include "kzopensdk.h"

extern "C" HRESULT WINAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** object) {
    using namespace vesk::kzsim;
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (classId != idOf(VESK_KZ_CLSID_OPENSDK)) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    Braxel::VESK::ComPtr<ClassFactory> factory;
    *factory.Receive() = new ClassFactory;
    return factory->QueryInterface(interfaceId, object);
}

extern "C" HRESULT WINAPI DllCanUnloadNow() {
    return vesk::kzsim::Server::isInUse() ? S_FALSE : S_OK;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, void* processEnds) {
    // When the process ends its other threads were stopped wherever they were, with a lock perhaps.
    if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
        vesk::kzsim::logUnload();
    }
    return TRUE;
}
