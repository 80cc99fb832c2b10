#include "opensdk.h"

#include <mutex>
#include <string>

namespace vesk::kzsim {

using devkit::JsonLine;
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

bool isOneForTheProcess(const Settings& settings) {
    return settings.number("process_wide", 0) != 0;
}

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

} // namespace

OpenSDK* OpenSDK::make() {
    const bool isOne = isOneForTheProcess(Settings());
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
    } else if (id == IID_IConnectionPoint) {
        *object = static_cast<IConnectionPoint*>(this);
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
    if (isOneForTheProcess(settings) && hasEnded()) {
        writeProblem("Initialize: it was shut down in this process before");
        return E_UNEXPECTED;
    }
    const HRESULT result = resultOf(settings, "initialize");
    open(SUCCEEDED(result));
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
    if (isOneForTheProcess(settings)) {
        rememberTheEnd();
    }
    close();
    playLate(settings);
    return result;
}

HRESULT OpenSDK::GetGenerateSerialNumber(IKZProperties** answer) {
    writeCall("GetGenerateSerialNumber");
    if (answer == nullptr) {
        return E_POINTER;
    }
    *answer = nullptr;
    const Settings settings = takeTime();
    if (!isOpen()) {
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
    const Settings settings = takeTime();
    const std::string scanPage = settings.text("interactive", "");
    return scanPage.empty() ? answer(settings, "login_by_qrcode", "on_qrcode")
                            : answerInteractively(settings, scanPage, bag->text("PreCode"));
}

HRESULT OpenSDK::GetLocalLoginList() {
    writeCall("GetLocalLoginList");
    return answer(takeTime(), "get_local_login_list", "on_local_list");
}

HRESULT OpenSDK::LoginByLocalLoginUser(BSTR openid) {
    const std::wstring_view text(openid == nullptr ? L"" : openid, SysStringLen(openid));
    simulator::writeDown(
        JsonLine().add("call", "LoginByLocalLoginUser").add("openid", toUtf8(text)));
    return answer(takeTime(), "login_by_local_user", "on_local_user");
}

HRESULT OpenSDK::RefreshClientTempKey() {
    writeCall("RefreshClientTempKey");
    return answer(takeTime(), "refresh", "on_refresh");
}

HRESULT OpenSDK::Logout() {
    writeCall("Logout");
    leaveScanPage();
    return answer(takeTime(), "logout", "on_logout");
}

Settings OpenSDK::takeTime() {
    Settings settings;
    ++mInside;
    Sleep(static_cast<DWORD>(settings.number("call_ms", 0)));
    --mInside;
    return settings;
}

} // namespace vesk::kzsim
