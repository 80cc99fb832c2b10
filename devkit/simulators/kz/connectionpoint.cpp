#include "connectionpoint.h"

#include <objbase.h>
#include <olectl.h>

#include "opensdk.h"

namespace vesk::kzsim {

using devkit::JsonLine;
using simulator::Settings;

namespace {

HRESULT makeListener(IUnknown* advised, const Settings& settings, Listener::Pointer& made) {
    const bool dispatched = firesThroughDispatch(settings);
    if (settings.number("apartment", 0) == 0) {
        return Listener::hold(advised, dispatched, made);
    }
    APTTYPE type = APTTYPE_CURRENT;
    APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
    const HRESULT apartment = CoGetApartmentType(&type, &qualifier);
    return FAILED(apartment) ? apartment : Listener::deposit(advised, dispatched, made);
}

} // namespace

bool firesThroughDispatch(const Settings& settings) {
    return settings.text("events", "custom") == "dispatch";
}

ULONG ConnectionPoint::AddRef() {
    return mOwner.AddRef();
}

ULONG ConnectionPoint::Release() {
    return mOwner.Release();
}

HRESULT ConnectionPoint::QueryInterface(REFIID id, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IConnectionPoint) {
        return E_NOINTERFACE;
    }
    *object = static_cast<IConnectionPoint*>(this);
    AddRef();
    return S_OK;
}

HRESULT ConnectionPoint::GetConnectionInterface(IID* id) {
    if (id == nullptr) {
        return E_POINTER;
    }
    *id = idOf(firesThroughDispatch(Settings()) ? VESK_KZ_IID_DISPEVENTS : VESK_KZ_IID_EVENTS);
    return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
    return mOwner.QueryInterface(IID_IConnectionPointContainer,
                                 reinterpret_cast<void**>(container));
}

HRESULT ConnectionPoint::Advise(IUnknown* advised, DWORD* cookie) {
    if (advised == nullptr || cookie == nullptr) {
        return E_POINTER;
    }
    *cookie = 0;
    const Settings settings;
    Listener::Pointer listener;
    const HRESULT found = makeListener(advised, settings, listener);
    const HRESULT result = FAILED(found) ? found : resultOf(settings, "advise");
    if (SUCCEEDED(result)) {
        *cookie = mListeners.add(listener);
    }
    simulator::writeDown(JsonLine().add("call", "Advise").add("cookie", *cookie));
    if (SUCCEEDED(result)) {
        mOwner.onAdvised(settings);
    }
    return result;
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) {
    simulator::writeDown(JsonLine().add("call", "Unadvise").add("cookie", cookie));
    const int64_t keep = Settings().number("keep_sink", 0);
    if (keep == 0) {
        return mListeners.remove(cookie) ? S_OK : CONNECT_E_NOCONNECTION;
    }
    return mListeners.keep(cookie, keep == 2) ? S_OK : CONNECT_E_NOCONNECTION;
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** /*connections*/) {
    return E_NOTIMPL;
}

} // namespace vesk::kzsim
