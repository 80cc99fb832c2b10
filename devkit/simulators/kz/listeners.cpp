#include "listeners.h"

#include <mutex>
#include <objbase.h>
#include <objidl.h>
#include <olectl.h>
#include <utility>

namespace vesk::kzsim {

namespace {

using Braxel::VESK::ComPtr;

IID idOfEvents(bool dispatched) {
    return idOf(dispatched ? VESK_KZ_IID_DISPEVENTS : VESK_KZ_IID_EVENTS);
}

/// @param events what the listener has answered for the events' id, and so no other interface
HRESULT call(IUnknown* events, bool dispatched, LONG type, IKZProperties* result) {
    if (!dispatched) {
        return static_cast<IKZOpenSDKEvents*>(events)->OnNotify(type, result);
    }
    VARIANTARG arguments[2] = {}; // the last one first
    arguments[1].vt = VT_I4;
    arguments[1].lVal = type;
    arguments[0].vt = VT_UNKNOWN;
    arguments[0].punkVal = result;
    DISPPARAMS parameters = {arguments, nullptr, 2, 0};
    return static_cast<IDispatch*>(events)->Invoke(VESK_KZ_DISPID_NOTIFY, IID_NULL,
                                                   LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                                   &parameters, nullptr, nullptr, nullptr);
}

/// The process's table of interfaces, and COM on this thread for as long as it is used.
struct InterfaceTable {
    InterfaceTable()
        : joined(CoInitializeEx(nullptr, COINIT_MULTITHREADED)),
          found(CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER,
                                 IID_IGlobalInterfaceTable,
                                 reinterpret_cast<void**>(table.Receive()))) {}
    ~InterfaceTable() {
        table.Reset();
        if (SUCCEEDED(joined)) {
            CoUninitialize();
        }
    }
    InterfaceTable(const InterfaceTable&) = delete;
    InterfaceTable& operator=(const InterfaceTable&) = delete;

    const HRESULT joined;
    ComPtr<IGlobalInterfaceTable> table;
    const HRESULT found;
};

} // namespace

HRESULT Listener::hold(IUnknown* advised) {
    const HRESULT found = advised->QueryInterface(idOfEvents(mDispatched),
                                                  reinterpret_cast<void**>(mEvents.Receive()));
    return FAILED(found) ? CONNECT_E_CANNOTCONNECT : S_OK;
}

HRESULT Listener::deposit(IUnknown* advised) {
    APTTYPE type = APTTYPE_CURRENT;
    APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
    const HRESULT apartment = CoGetApartmentType(&type, &qualifier);
    if (FAILED(apartment)) {
        return apartment;
    }
    const InterfaceTable there;
    return FAILED(there.found) ? there.found
                               : there.table->RegisterInterfaceInGlobal(
                                     advised, idOfEvents(mDispatched), &mDeposit);
}

Listener::~Listener() {
    if (mDeposit != 0) {
        const InterfaceTable there;
        if (SUCCEEDED(there.found)) {
            there.table->RevokeInterfaceFromGlobal(mDeposit);
        }
    }
}

HRESULT Listener::notify(LONG type, IKZProperties* result) const {
    if (mDeposit == 0) {
        return call(mEvents.Get(), mDispatched, type, result);
    }
    const InterfaceTable there;
    ComPtr<IUnknown> events;
    const HRESULT got =
        FAILED(there.found)
            ? there.found
            : there.table->GetInterfaceFromGlobal(mDeposit, idOfEvents(mDispatched),
                                                  reinterpret_cast<void**>(events.Receive()));
    return FAILED(got) ? got : call(events.Get(), mDispatched, type, result);
}

DWORD Listeners::add(const Listener::Pointer& listener) {
    const std::lock_guard<Lock> guard(mLock);
    mListeners[++mLastCookie] = listener;
    return mLastCookie;
}

bool Listeners::remove(DWORD cookie, int64_t keep) {
    Listener::Pointer removed;
    const std::lock_guard<Lock> guard(mLock);
    const auto found = mListeners.find(cookie);
    if (found == mListeners.end()) {
        return false;
    }
    if (keep == 0) {
        removed = std::move(found->second);
        mListeners.erase(found);
    } else if (keep == 2) {
        new Listener::Pointer(found->second); // so that it is never released
    }
    return true;
}

std::vector<Listener::Pointer> Listeners::all() const {
    const std::lock_guard<Lock> guard(mLock);
    std::vector<Listener::Pointer> listeners;
    for (const auto& entry : mListeners) {
        listeners.push_back(entry.second);
    }
    return listeners;
}

} // namespace vesk::kzsim
