#include "thirdsdk/kz/dllapihelper.h"

#include <objbase.h>

#include "foundation/log/vesklogger.h"
#include "platformimpl/foundation/os/text.h"
#include "thirdsdk/kz/comsupport.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr size_t kLongestPath = MAX_PATH - 1;

HMODULE CoLoad(const std::wstring& path) {
    HMODULE module = CoLoadLibrary(const_cast<wchar_t*>(path.c_str()), TRUE);
    if (module == nullptr) {
        // Asked for at once: logging itself calls the system.
        const int error = static_cast<int>(GetLastError());
        VESK_LOG_ERROR("SSO_SafeCoLoadLibrary", "CoLoadLibrary: %s failed error(%d)!",
                       os::WideToUtf8(path).c_str(), error);
    }
    return module;
}

std::wstring WithBackslash(std::wstring directory) {
    if (!directory.empty() && directory.back() != L'\\') {
        directory += L'\\';
    }
    return directory;
}

/// What a Windows call puts into a buffer of MAX_PATH characters; empty when it does not fit.
template <typename Call>
std::wstring FromBuffer(const Call& call) {
    wchar_t buffer[MAX_PATH] = {};
    const UINT length = call(buffer, MAX_PATH);
    return length == 0 || length >= MAX_PATH ? std::wstring() : std::wstring(buffer, length);
}

std::wstring ProgramDirectory() {
    const std::wstring path = FromBuffer([](wchar_t* buffer, UINT size) -> UINT {
        return GetModuleFileNameW(nullptr, buffer, size);
    });
    const size_t backslash = path.rfind(L'\\');
    return backslash == std::wstring::npos ? std::wstring() : path.substr(0, backslash + 1);
}

} // namespace

HMODULE SSO_SafeCoLoadLibrary(const std::wstring& fileName) {
    if (fileName.find(L'\\') != std::wstring::npos) {
        return CoLoad(fileName);
    }
    // The current directory and the search path are never used: anybody could have put a file
    // of this name there.
    const std::wstring directories[] = {
        WithBackslash(FromBuffer(&GetSystemDirectoryW)),
        WithBackslash(FromBuffer(&GetWindowsDirectoryW)),
        ProgramDirectory(),
    };
    for (const std::wstring& directory : directories) {
        const std::wstring path = directory + fileName;
        if (directory.empty() || path.size() > kLongestPath) {
            continue;
        }
        HMODULE module = CoLoad(path);
        if (module != nullptr) {
            return module;
        }
    }
    return nullptr;
}

HRESULT CreateObjectFromDllFile(const std::wstring& path, REFCLSID classId, REFIID interfaceId,
                                void** object, HMODULE* module) {
    if (object == nullptr) {
        VESK_LOG_ERROR("CreateObjectFromDllFile", "CreateObjectFromDllFile: ppObject nullptr!");
        return E_POINTER;
    }
    *object = nullptr;
    HMODULE loaded = SSO_SafeCoLoadLibrary(path);
    if (module != nullptr) {
        *module = loaded;
    }
    if (loaded == nullptr) {
        VESK_LOG_ERROR("CreateObjectFromDllFile", "CreateObjectFromDllFile: Load Library failed!");
        return HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND);
    }
    const auto getClassObject = reinterpret_cast<LPFNGETCLASSOBJECT>(
        reinterpret_cast<void (*)()>(GetProcAddress(loaded, "DllGetClassObject")));
    if (getClassObject == nullptr) {
        VESK_LOG_ERROR("CreateObjectFromDllFile",
                       "CreateObjectFromDllFile: DllGetClassObject failed!");
        return E_NOTIMPL;
    }
    ComPtr<IClassFactory> factory;
    const HRESULT found =
        getClassObject(classId, IID_IClassFactory, reinterpret_cast<void**>(factory.Receive()));
    if (FAILED(found) || !factory) {
        VESK_LOG_ERROR("CreateObjectFromDllFile",
                       "CreateObjectFromDllFile: IID_IClassFactory failed!");
        return FAILED(found) ? found : E_NOINTERFACE;
    }
    return factory->CreateInstance(nullptr, interfaceId, object);
}

} // namespace VESK
} // namespace Braxel
