#include "opensdk.h"

#include <mutex>
#include <olectl.h>
#include <string>
#include <system_error>

namespace vesk::kzsim {

using devkit::JsonLine;
using simulator::PlayerDesk;
using simulator::Settings;

namespace {

void writeCall(const char* name) {
    simulator::writeDown(JsonLine().add("call", name));
}

/// Writes the call down with what is in its parameter object. @return that; null when it is not one
/// of ours, as it has to be.
PropertyBag::Pointer writeCall(const char* name, IKZProperties* parameters) {
    JsonLine line;
    line.add("call", name);
    const PropertyBag::Pointer bag = PropertyBag::from(parameters);
    if (bag) {
        bag->writeTo(line);
    }
    simulator::writeDown(line);
    if (!bag) {
        writeProblem(std::string(name) + ": the parameters are not from CreateParameters");
    }
    return bag;
}

HRESULT giveOut(const PropertyBag::Pointer& bag, IKZProperties** receiver) {
    bag->AddRef();
    *receiver = bag.Get();
    return S_OK;
}

Lock theLives; // guards the pointer, and the last reference of every object
OpenSDK* theOne = nullptr;

// Of the process, not of this library: it must still be known when the library was unloaded and is
// loaded again. The id is there because a child process inherits it.
constexpr wchar_t kEnded[] = L"VESK_KZ_SIM_ENDED_IN";

void rememberTheEnd() {
    SetEnvironmentVariableW(kEnded, std::to_wstring(GetCurrentProcessId()).c_str());
}

bool hasEnded() {
    wchar_t process[16] = {};
    return GetEnvironmentVariableW(kEnded, process, 16) != 0 &&
           process == std::to_wstring(GetCurrentProcessId());
}

scanclient::PlayerScript player() {
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

OpenSDK* OpenSDK::make() {
    const bool isOne = Settings().number("process_wide", 0) != 0;
    const std::lock_guard<Lock> guard(theLives);
    if (!isOne) {
        return new OpenSDK;
    }
    if (theOne == nullptr) {
        theOne = new OpenSDK;
    } else {
        theOne->AddRef();
    }
    return theOne;
}

OpenSDK::~OpenSDK() {
    endWork();
}

ULONG OpenSDK::Release() {
    ULONG left = 0;
    {
        const std::lock_guard<Lock> guard(theLives);
        left = --mReferences;
        if (left == 0 && theOne == this) {
            theOne = nullptr;
        }
    }
    if (left == 0) {
        delete this;
    }
    return left;
}

HRESULT OpenSDK::QueryInterface(REFIID id, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (id == IID_IUnknown || id == idOf(VESK_KZ_IID_OPENSDK)) {
        *object = static_cast<IKZOpenSDK*>(this);
    } else if (id == IID_IConnectionPointContainer) {
        *object = static_cast<IConnectionPointContainer*>(this);
    } else {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

HRESULT OpenSDK::CreateParameters(IKZProperties** parameters) {
    return parameters == nullptr ? E_POINTER : giveOut(PropertyBag::make(), parameters);
}

HRESULT OpenSDK::Initialize(IKZProperties* parameters) {
    if (!writeCall("Initialize", parameters)) {
        return E_INVALIDARG;
    }
    const Settings settings;
    Sleep(static_cast<DWORD>(settings.number("initialize_ms", 0)));
    const HRESULT result = resultOf(settings, "initialize");
    if (settings.number("process_wide", 0) != 0 && hasEnded()) {
        writeProblem("Initialize: it was shut down in this process before");
        return E_UNEXPECTED;
    }
    const std::lock_guard<Lock> guard(mLock);
    mIsInitialized = SUCCEEDED(result);
    return result;
}

HRESULT OpenSDK::UnInitialize() {
    JsonLine line;
    line.add("call", "UnInitialize");
    if (const long inside = mInside) {
        line.add("inside", inside);
    }
    simulator::writeDown(line);
    const Settings settings;
    Sleep(static_cast<DWORD>(settings.number("uninitialize_ms", 0)));
    const HRESULT result = resultOf(settings, "uninitialize");
    if (FAILED(result)) {
        return result;
    }
    if (settings.number("process_wide", 0) != 0) {
        rememberTheEnd();
    }
    endWork();
    sendLateEvent(settings);
    return result;
}

HRESULT OpenSDK::GetGenerateSerialNumber(IKZProperties** answer) {
    writeCall("GetGenerateSerialNumber");
    if (answer == nullptr) {
        return E_POINTER;
    }
    *answer = nullptr;
    const Settings settings;
    takeTime(settings);
    if (!isInitialized()) {
        return E_UNEXPECTED;
    }
    const std::string serial = settings.text("serial", "SIM-SERIAL");
    if (serial.empty()) {
        return E_FAIL;
    }
    const PropertyBag::Pointer bag = PropertyBag::make();
    bag->set("result", serial);
    return giveOut(bag, answer);
}

HRESULT OpenSDK::LoginByQRCode(IKZProperties* parameters) {
    const PropertyBag::Pointer bag = writeCall("LoginByQRCode", parameters);
    if (!bag) {
        return E_INVALIDARG;
    }
    const Settings settings;
    const std::string scanPage = settings.text("interactive", "");
    return scanPage.empty() ? answer("login_by_qrcode", "on_qrcode")
                            : answerInteractively(settings, scanPage, bag->text(L"PreCode"));
}

HRESULT OpenSDK::GetLocalLoginList() {
    writeCall("GetLocalLoginList");
    return answer("get_local_login_list", "on_local_list");
}

HRESULT OpenSDK::LoginByLocalLoginUser(BSTR openid) {
    const std::wstring_view text(openid == nullptr ? L"" : openid, SysStringLen(openid));
    simulator::writeDown(
        JsonLine().add("call", "LoginByLocalLoginUser").add("openid", toUtf8(text)));
    return answer("login_by_local_user", "on_local_user");
}

HRESULT OpenSDK::RefreshClientTempKey() {
    writeCall("RefreshClientTempKey");
    return answer("refresh", "on_refresh");
}

HRESULT OpenSDK::Logout() {
    writeCall("Logout");
    leaveScanPage();
    return answer("logout", "on_logout");
}

HRESULT OpenSDK::EnumConnectionPoints(IEnumConnectionPoints** /*connectionPoints*/) {
    return E_NOTIMPL;
}

HRESULT OpenSDK::FindConnectionPoint(REFIID id, IConnectionPoint** connectionPoint) {
    if (connectionPoint == nullptr) {
        return E_POINTER;
    }
    *connectionPoint = nullptr;
    if (id !=
        idOf(firesThroughDispatch(Settings()) ? VESK_KZ_IID_DISPEVENTS : VESK_KZ_IID_EVENTS)) {
        return CONNECT_E_NOCONNECTION;
    }
    *connectionPoint = &mConnectionPoint;
    AddRef();
    return S_OK;
}

void OpenSDK::onAdvised(const Settings& settings) {
    const Script script = readScript(settings, "on_advise");
    if (script.empty()) {
        return;
    }
    std::shared_ptr<EventThread> thread;
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

void OpenSDK::takeTime(const Settings& settings) {
    ++mInside;
    Sleep(static_cast<DWORD>(settings.number("call_ms", 0)));
    --mInside;
}

HRESULT OpenSDK::answer(const char* resultKey, const char* scriptKey) {
    const Settings settings;
    takeTime(settings);
    const HRESULT result = resultOf(settings, resultKey);
    const Script script = SUCCEEDED(result) ? readScript(settings, scriptKey) : Script();
    const std::lock_guard<Lock> guard(mLock);
    if (!mIsInitialized) {
        return E_UNEXPECTED;
    }
    if (!script.empty()) {
        const auto thread = startedThread();
        if (!thread) {
            return E_OUTOFMEMORY;
        }
        thread->play(script);
    }
    return result;
}

HRESULT OpenSDK::answerInteractively(const Settings& settings, const std::string& controlUrl,
                                     const std::string& preCode) {
    takeTime(settings);
    leaveScanPage(); // the code that came before is void
    const HRESULT result = resultOf(settings, "login_by_qrcode");
    const std::lock_guard<Lock> guard(mLock);
    if (!mIsInitialized) {
        return E_UNEXPECTED;
    }
    if (SUCCEEDED(result)) {
        const auto thread = startedThread();
        if (!thread) {
            return E_OUTOFMEMORY;
        }
        try {
            mDesk = std::make_unique<PlayerDesk>(
                controlUrl, preCode, player(), [thread](const std::string& steps) {
                    if (steps == player().noBackend) {
                        writeProblem("interactive: the dev backend does not answer");
                    }
                    thread->play(readSteps(Settings(), "interactive", steps));
                });
        } catch (const std::system_error&) {
            return E_OUTOFMEMORY; // the system has no thread to give
        }
    }
    return result;
}

bool OpenSDK::isInitialized() {
    const std::lock_guard<Lock> guard(mLock);
    return mIsInitialized;
}

std::shared_ptr<EventThread> OpenSDK::startedThread() {
    if (!mThread) {
        mThread = EventThread::start(mListeners);
    }
    return mThread;
}

void OpenSDK::leaveScanPage() {
    std::unique_ptr<PlayerDesk> desk;
    const std::lock_guard<Lock> guard(mLock);
    desk.swap(mDesk);
}

void OpenSDK::endWork() {
    std::unique_ptr<PlayerDesk> desk;
    std::shared_ptr<EventThread> thread;
    {
        const std::lock_guard<Lock> guard(mLock);
        mIsInitialized = false;
        thread.swap(mThread);
        desk.swap(mDesk);
    }
    desk.reset(); // while the event thread still takes its events
    if (thread) {
        thread->stop();
    }
}

void OpenSDK::sendLateEvent(const Settings& settings) {
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
    if (const auto thread = EventThread::start(listeners)) {
        thread->play(readScript(settings, "on_late"));
        thread->leaveAlone();
    }
}

} // namespace vesk::kzsim
