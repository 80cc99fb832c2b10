#include "module/veskmodule.h"

#include <windows.h>
#include <cstdlib>
#include <cwchar>

#include "module/veskatlcommodule.h"
#include "module/veskruntime.h"
#include "module/veskunload_win.h"

namespace Braxel {
namespace VESK {

namespace {

bool gProcessGoesOn = false;
std::atomic<VESKModule::Release*> gReleases{nullptr};

/// Newest first: what made an object is older than the object.
void ReleaseProcessWide() {
    const VESKModule::Release* release = gReleases;
    while (release != nullptr) {
        const VESKModule::Release* next = release->next;
        release->function();
        release = next;
    }
}

/// Runs after all other destructors of the library, when the last thread has left it.
struct Leave {
    ~Leave() {
        // Only after UnInstall: otherwise a component may still call, and what it finds must be
        // there. At the end of the process Windows takes everything.
        if (unload::Started() && gProcessGoesOn) {
            ReleaseProcessWide();
            ReleaseRuntimeMemory();
        }
    }
};

const Leave gLeave; // before whatever has a destructor, so that it goes last
CVESKATLComModule gAtlModule;
wchar_t gModulePath[MAX_PATH] = {};
constexpr size_t kLongestOemCharacter = 4;

/// Called by the loader for each process and thread that comes or goes. It must not log: the
/// loader holds its lock.
bool Attach(HMODULE module, DWORD reason) {
    wchar_t path[MAX_PATH] = {};
    const DWORD length = GetModuleFileNameW(module, path, MAX_PATH);
    // A path that does not fit is cut, and its cut form would name another folder.
    if (length == 0 || length >= MAX_PATH) {
        path[0] = L'\0';
    }
    // Written only when it changes: other threads may be reading it.
    if (std::wcscmp(path, gModulePath) != 0) {
        std::wcscpy(gModulePath, path);
    }
    return reason != DLL_PROCESS_ATTACH || gAtlModule.Initialized();
}

} // namespace

std::string VESKModule::Directory() {
    const wchar_t* backslash = std::wcsrchr(gModulePath, L'\\');
    if (backslash == nullptr) {
        return {};
    }
    char text[MAX_PATH * kLongestOemCharacter] = {};
    const int length =
        WideCharToMultiByte(CP_OEMCP, 0, gModulePath, static_cast<int>(backslash + 1 - gModulePath),
                            text, sizeof text, nullptr, nullptr);
    return std::string(text, static_cast<size_t>(length)); // none when it fails
}

void VESKModule::UsePath(const std::string& path) {
    wchar_t wide[MAX_PATH] = {};
    if (std::mbstowcs(wide, path.c_str(), MAX_PATH) < MAX_PATH) {
        std::wcscpy(gModulePath, wide);
    }
}

void VESKModule::AtUnload(Release& release) {
    release.next = gReleases.load();
    while (!gReleases.compare_exchange_weak(release.next, &release)) {
    }
}

namespace {

HMODULE FindOwnModule(DWORD flags) {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags,
                       reinterpret_cast<LPCWSTR>(gModulePath), &module);
    return module;
}

} // namespace

void VESKModule::StayLoaded() {
    FindOwnModule(GET_MODULE_HANDLE_EX_FLAG_PIN);
}

VESKModule::Reference::Reference() noexcept : mModule(FindOwnModule(0)) {}

VESKModule::Reference::~Reference() {
    if (mModule != nullptr) {
        FreeLibrary(static_cast<HMODULE>(mModule));
    }
}

void VESKModule::StartUnload() {
    unload::Start();
}

} // namespace VESK
} // namespace Braxel

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID processEnds) {
    namespace unload = Braxel::VESK::unload;
    if (reason == DLL_PROCESS_ATTACH) {
        unload::OnLoaded(module);
    } else if (reason == DLL_THREAD_DETACH) {
        unload::OnThreadEnd();
    } else if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
        Braxel::VESK::gProcessGoesOn = true;
        unload::OnLeave();
    }
    return Braxel::VESK::Attach(module, reason) ? TRUE : FALSE;
}
