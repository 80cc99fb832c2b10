#include "events.h"

#include <mutex>
#include <objbase.h>
#include <objidl.h>
#include <olectl.h>
#include <utility>

namespace vesk::kzsim {

namespace {

using Braxel::VESK::ComPtr;

constexpr ULONGLONG kPatience = 2000;

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

std::shared_ptr<EventThread> EventThread::start(std::shared_ptr<Listeners> listeners) {
    std::shared_ptr<EventThread> thread(new EventThread(std::move(listeners)));
    thread->mItself = thread;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&EventThread::run), &thread->mModule);
    // Not std::thread: it would return into code that is unmapped by then.
    thread->mHandle = CreateThread(nullptr, 0, &EventThread::run, thread.get(), 0, &thread->mId);
    if (thread->mHandle == nullptr) {
        FreeLibrary(thread->mModule);
        thread->mItself.reset();
        return nullptr;
    }
    return thread;
}

DWORD WINAPI EventThread::run(void* argument) {
    std::shared_ptr<EventThread> thread = std::move(static_cast<EventThread*>(argument)->mItself);
    for (Event event; thread->takeNext(event); event = Event()) {
        thread->deliver(event);
        const std::lock_guard<Lock> guard(thread->mLock);
        ++thread->mDelivered;
        thread->mLock.signal();
    }
    const HMODULE module = thread->mModule;
    thread.reset();
    FreeLibraryAndExitThread(module, 0);
}

unsigned EventThread::play(const Script& script) {
    const std::lock_guard<Lock> guard(mLock);
    ULONGLONG due = GetTickCount64();
    for (const Step& step : script) {
        due += step.delay;
        mToCome.emplace(due, step.event);
    }
    mLock.signal();
    return mDelivered;
}

bool EventThread::waitForMoreThan(unsigned before) {
    const ULONGLONG deadline = GetTickCount64() + kPatience;
    const std::lock_guard<Lock> guard(mLock);
    for (ULONGLONG now = GetTickCount64(); mDelivered <= before && !mIsStopping && now < deadline;
         now = GetTickCount64()) {
        mLock.wait(static_cast<DWORD>(deadline - now));
    }
    return mDelivered > before || mIsStopping;
}

void EventThread::stop() {
    {
        const std::lock_guard<Lock> guard(mLock);
        mIsStopping = true;
        mToCome.clear();
        mLock.signal();
    }
    if (!isThisThread()) {
        WaitForSingleObject(mHandle, INFINITE);
    }
    CloseHandle(mHandle);
}

void EventThread::leaveAlone() {
    CloseHandle(mHandle);
    const std::lock_guard<Lock> guard(mLock);
    mEndsWhenIdle = true;
    mLock.signal();
}

bool EventThread::takeNext(Event& event) {
    const std::lock_guard<Lock> guard(mLock);
    while (!mIsStopping && !(mEndsWhenIdle && mToCome.empty())) {
        const ULONGLONG now = GetTickCount64();
        const auto first = mToCome.begin();
        if (first == mToCome.end()) {
            mLock.wait(INFINITE);
        } else if (first->first > now) {
            mLock.wait(static_cast<DWORD>(first->first - now));
        } else {
            event = first->second;
            mToCome.erase(first);
            return true;
        }
    }
    return false;
}

void EventThread::deliver(const Event& event) {
    bool heard = false;
    for (const Listener::Pointer& listener : mListeners->all()) {
        // One listener may end it all for the next.
        if (isStopping()) {
            break;
        }
        const HRESULT result = listener->notify(event.type, event.bag.Get());
        if (FAILED(result)) {
            writeProblem("event " + std::to_string(event.type) + ": the listener answers " +
                         std::to_string(result));
        }
        heard = heard || SUCCEEDED(result);
    }
    if (heard) {
        simulator::writeDown(devkit::JsonLine().add("event", event.type));
    }
}

bool EventThread::isStopping() {
    const std::lock_guard<Lock> guard(mLock);
    return mIsStopping;
}

} // namespace vesk::kzsim
