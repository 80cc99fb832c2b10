#include <cstring>
#include <objbase.h>

#include "opensdk.h"
#include "simulator.h"

const char* const vesk::simulator::kName = "kz";

namespace vesk::kzsim {

using devkit::JsonLine;
using simulator::writeDown;

namespace {

std::atomic<long> theLocks{0};

/// Makes the component's object.
class ClassFactory final : public Braxel::VESK::ComObject<IClassFactory> {
public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override {
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

    HRESULT STDMETHODCALLTYPE LockServer(BOOL locks) override {
        theLocks += locks != FALSE ? 1 : -1;
        return S_OK;
    }

protected:
    const IID& InterfaceId() const override { return IID_IClassFactory; }

private:
    ~ClassFactory() override = default;

    const LiveObject mLive;
};

} // namespace

GUID idOf(const char* text) {
    GUID id = {};
    IIDFromString(std::wstring(text, text + std::strlen(text)).c_str(), &id);
    return id;
}

void writeProblem(const std::string& what) {
    writeDown(JsonLine().add("problem", what));
}

LiveObject::~LiveObject() {
    if (--sCount == 0) {
        writeDown(JsonLine().add("objects", count()));
    }
}

} // namespace vesk::kzsim

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
    // An event thread does not count: it keeps the library by itself.
    return vesk::kzsim::LiveObject::count() != 0 || vesk::kzsim::theLocks != 0 ? S_FALSE : S_OK;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, void* processEnds) {
    using namespace vesk;
    // When the process ends its other threads were stopped wherever they were, with a lock perhaps.
    if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
        simulator::writeDown(
            devkit::JsonLine().add("objects", kzsim::LiveObject::count()).add("unloaded", true));
    }
    return TRUE;
}
