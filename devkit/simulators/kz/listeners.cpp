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

class HeldListener final : public Listener {
public:
    HeldListener(ComPtr<IUnknown> events, bool dispatched)
        : mEvents(std::move(events)), mDispatched(dispatched) {}

    HRESULT notify(LONG type, IKZProperties* result) override {
        return call(mEvents.Get(), mDispatched, type, result);
    }

private:
    const ComPtr<IUnknown> mEvents;
    const bool mDispatched;
};

/// COM on this thread for as long as it lives.
class Apartment {
public:
    Apartment() : mResult(CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}
    ~Apartment() {
        if (SUCCEEDED(mResult)) {
            CoUninitialize();
        }
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;

private:
    const HRESULT mResult;
};

HRESULT findTable(ComPtr<IGlobalInterfaceTable>& table) {
    return CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER,
                            IID_IGlobalInterfaceTable, reinterpret_cast<void**>(table.Receive()));
}

class DepositedListener final : public Listener {
public:
    DepositedListener(DWORD cookie, bool dispatched) : mCookie(cookie), mDispatched(dispatched) {}

    ~DepositedListener() override {
        const Apartment apartment;
        ComPtr<IGlobalInterfaceTable> table;
        if (SUCCEEDED(findTable(table))) {
            table->RevokeInterfaceFromGlobal(mCookie);
        }
    }

    HRESULT notify(LONG type, IKZProperties* result) override {
        const Apartment apartment;
        ComPtr<IGlobalInterfaceTable> table;
        ComPtr<IUnknown> events;
        HRESULT got = findTable(table);
        if (SUCCEEDED(got)) {
            got = table->GetInterfaceFromGlobal(mCookie, idOfEvents(mDispatched),
                                                reinterpret_cast<void**>(events.Receive()));
        }
        return SUCCEEDED(got) ? call(events.Get(), mDispatched, type, result) : got;
    }

private:
    const DWORD mCookie;
    const bool mDispatched;
};

} // namespace

HRESULT Listener::hold(IUnknown* advised, bool dispatched, Pointer& made) {
    ComPtr<IUnknown> events;
    if (FAILED(advised->QueryInterface(idOfEvents(dispatched),
                                       reinterpret_cast<void**>(events.Receive())))) {
        return CONNECT_E_CANNOTCONNECT;
    }
    made = std::make_shared<HeldListener>(std::move(events), dispatched);
    return S_OK;
}

HRESULT Listener::deposit(IUnknown* advised, bool dispatched, Pointer& made) {
    ComPtr<IGlobalInterfaceTable> table;
    DWORD cookie = 0;
    HRESULT result = findTable(table);
    if (SUCCEEDED(result)) {
        result = table->RegisterInterfaceInGlobal(advised, idOfEvents(dispatched), &cookie);
    }
    if (SUCCEEDED(result)) {
        made = std::make_shared<DepositedListener>(cookie, dispatched);
    }
    return result;
}

DWORD Listeners::add(const Listener::Pointer& listener) {
    const std::lock_guard<Lock> guard(mLock);
    mListeners[++mLastCookie] = listener;
    return mLastCookie;
}

bool Listeners::remove(DWORD cookie) {
    Listener::Pointer removed;
    const std::lock_guard<Lock> guard(mLock);
    const auto found = mListeners.find(cookie);
    if (found == mListeners.end()) {
        return false;
    }
    removed = found->second;
    mListeners.erase(found);
    return true;
}

bool Listeners::keep(DWORD cookie, bool forever) {
    const std::lock_guard<Lock> guard(mLock);
    const auto found = mListeners.find(cookie);
    if (found != mListeners.end() && forever) {
        new Listener::Pointer(found->second);
    }
    return found != mListeners.end();
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
