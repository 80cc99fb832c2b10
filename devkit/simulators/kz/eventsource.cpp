#include <mutex>
#include <olectl.h>
#include <system_error>

#include "opensdk.h"

namespace vesk::kzsim {

using devkit::JsonLine;
using simulator::PlayerDesk;
using simulator::Settings;

namespace {

bool firesThroughDispatch(const Settings& settings) {
    return settings.text("events", "custom") == "dispatch";
}

IID idOfEvents() {
    return idOf(firesThroughDispatch(Settings()) ? VESK_KZ_IID_DISPEVENTS : VESK_KZ_IID_EVENTS);
}

simulator::PlayerScript player() {
    return {"KZ",
            "0:info:1:",
            "0:result:1:6:1:no scan page",
            "0:result:1:6:1:the scan page has gone",
            {{"scanned", "0:result:0:2"},
             {"confirm", "0:result:0:3"},
             {"deny", "0:result:1:5:1:denied at the scan page"},
             {"expire", "0:result:1:4:1:expired at the scan page"},
             {"fail", "0:result:*:6"}}};
}

} // namespace

HRESULT resultOf(const Settings& settings, const char* key) {
    return static_cast<HRESULT>(settings.number(key, S_OK));
}

HRESULT EventSource::FindConnectionPoint(REFIID id, IConnectionPoint** connectionPoint) {
    if (connectionPoint == nullptr) {
        return E_POINTER;
    }
    *connectionPoint = nullptr;
    if (id != idOfEvents()) {
        return CONNECT_E_NOCONNECTION;
    }
    *connectionPoint = this;
    (*connectionPoint)->AddRef();
    return S_OK;
}

HRESULT EventSource::GetConnectionInterface(IID* id) {
    if (id == nullptr) {
        return E_POINTER;
    }
    *id = idOfEvents();
    return S_OK;
}

HRESULT EventSource::GetConnectionPointContainer(IConnectionPointContainer** container) {
    return static_cast<IConnectionPoint*>(this)->QueryInterface(
        IID_IConnectionPointContainer, reinterpret_cast<void**>(container));
}

HRESULT EventSource::Advise(IUnknown* advised, DWORD* cookie) {
    if (advised == nullptr || cookie == nullptr) {
        return E_POINTER;
    }
    *cookie = 0;
    const Settings settings;
    const auto listener = std::make_shared<Listener>(firesThroughDispatch(settings));
    const bool isApartment = settings.number("apartment", 0) != 0;
    const HRESULT found = isApartment ? listener->deposit(advised) : listener->hold(advised);
    const HRESULT result = FAILED(found) ? found : resultOf(settings, "advise");
    if (SUCCEEDED(result)) {
        *cookie = mListeners->add(listener);
    }
    simulator::writeDown(JsonLine().add("call", "Advise").add("cookie", *cookie));
    if (SUCCEEDED(result)) {
        onAdvised(settings);
    }
    return result;
}

HRESULT EventSource::Unadvise(DWORD cookie) {
    simulator::writeDown(JsonLine().add("call", "Unadvise").add("cookie", cookie));
    const bool found = mListeners->remove(cookie, Settings().number("keep_sink", 0));
    return found ? S_OK : CONNECT_E_NOCONNECTION;
}

void EventSource::open(bool isOpen) {
    const std::lock_guard<Lock> guard(mLock);
    mIsOpen = isOpen;
}

bool EventSource::isOpen() {
    const std::lock_guard<Lock> guard(mLock);
    return mIsOpen;
}

void EventSource::close() {
    std::unique_ptr<PlayerDesk> desk;
    Thread thread;
    {
        const std::lock_guard<Lock> guard(mLock);
        mIsOpen = false;
        thread.swap(mThread);
        desk.swap(mDesk);
    }
    desk.reset(); // while the event thread still takes its events
    if (thread) {
        thread->stop();
    }
}

HRESULT EventSource::answer(const Settings& settings, const char* resultKey,
                            const char* scriptKey) {
    const HRESULT result = resultOf(settings, resultKey);
    const Script script = SUCCEEDED(result) ? readScript(settings, scriptKey) : Script();
    return answerAndThen(result, [&](const Thread& thread) { thread->play(script); });
}

HRESULT EventSource::answerInteractively(const Settings& settings, const std::string& controlUrl,
                                         const std::string& preCode) {
    leaveScanPage(); // the code that came before is void
    return answerAndThen(resultOf(settings, "login_by_qrcode"), [&](const Thread& thread) {
        const auto play = [thread](const std::string& steps) {
            if (steps == player().noBackend) {
                writeProblem("interactive: the dev backend does not answer");
            }
            thread->play(readSteps(Settings(), "interactive", steps));
        };
        mDesk = std::make_unique<PlayerDesk>(controlUrl, preCode, player(), play);
    });
}

HRESULT EventSource::answerAndThen(HRESULT result,
                                   const std::function<void(const Thread&)>& follow) {
    const std::lock_guard<Lock> guard(mLock);
    if (!mIsOpen) {
        return E_UNEXPECTED;
    }
    if (FAILED(result)) {
        return result;
    }
    try {
        const Thread thread = startedThread();
        if (thread) {
            follow(thread);
            return result;
        }
    } catch (const std::system_error&) { // NOLINT(bugprone-empty-catch): as below
    }
    return E_OUTOFMEMORY; // the system has no thread to give
}

EventSource::Thread EventSource::startedThread() {
    if (!mThread) {
        mThread = EventThread::start(mListeners);
    }
    return mThread;
}

void EventSource::leaveScanPage() {
    std::unique_ptr<PlayerDesk> desk;
    const std::lock_guard<Lock> guard(mLock);
    desk.swap(mDesk);
}

void EventSource::onAdvised(const Settings& settings) {
    const Script script = readScript(settings, "on_advise");
    if (script.empty()) {
        return;
    }
    Thread thread;
    unsigned before = 0;
    {
        const std::lock_guard<Lock> guard(mLock);
        thread = startedThread();
        before = thread ? thread->play(script) : 0;
    }
    // A delay of 0 promises that the event is delivered before Advise returns.
    if (thread && script.front().delay == 0 && !thread->isThisThread() &&
        !thread->waitForMoreThan(before)) {
        writeProblem("Advise: the listener does not let its event in while it is being advised");
    }
}

void EventSource::playLate(const Settings& settings) {
    const int64_t late = settings.number("late_event", 0);
    if (late == 0) {
        return;
    }
    auto listeners = mListeners;
    if (late == 2) {
        listeners = std::make_shared<Listeners>();
        for (const Listener::Pointer& listener : mListeners->all()) {
            listeners->add(listener);
        }
    }
    if (const Thread thread = EventThread::start(listeners)) {
        thread->play(readScript(settings, "on_late"));
        thread->leaveAlone();
    }
}

} // namespace vesk::kzsim
