#include "connection_point.h"

#include <objbase.h>
#include <olectl.h>

#include "call_log.h"
#include "ids.h"
#include "json_line.h"
#include "open_sdk.h"
#include "settings.h"

namespace vesk::kzsim {
namespace {

HRESULT makeSink(IUnknown* listener, const Settings& settings, Sinks::Sink& sink) {
    const bool dispatched = firesThroughDispatch(settings);
    if (settings.number("apartment", 0) == 0) {
        return Listener::hold(listener, dispatched, sink);
    }
    APTTYPE type = APTTYPE_CURRENT;
    APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
    const HRESULT apartment = CoGetApartmentType(&type, &qualifier);
    return FAILED(apartment) ? apartment : Listener::deposit(listener, dispatched, sink);
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

HRESULT ConnectionPoint::Advise(IUnknown* listener, DWORD* cookie) {
    if (listener == nullptr || cookie == nullptr) {
        return E_POINTER;
    }
    *cookie = 0;
    const Settings settings;
    Sinks::Sink sink;
    const HRESULT found = makeSink(listener, settings, sink);
    const HRESULT result = FAILED(found) ? found : settings.result("advise");
    if (SUCCEEDED(result)) {
        *cookie = mSinks.add(sink);
    }
    logLine(JsonLine().add("call", "Advise").add("cookie", static_cast<long>(*cookie)));
    if (SUCCEEDED(result)) {
        mOwner.onAdvised(settings);
    }
    return result;
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) {
    logLine(JsonLine().add("call", "Unadvise").add("cookie", static_cast<long>(cookie)));
    const long keep = Settings().number("keep_sink", 0);
    if (keep == 0) {
        return mSinks.remove(cookie) ? S_OK : CONNECT_E_NOCONNECTION;
    }
    return mSinks.keep(cookie, keep == 2) ? S_OK : CONNECT_E_NOCONNECTION;
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** /*connections*/) {
    return E_NOTIMPL;
}

} // namespace vesk::kzsim
