#ifndef VESK_PLATFORMIMPL_LOGIN_VESKSTEAM_VESKSTEAMWRAPPER_H
#define VESK_PLATFORMIMPL_LOGIN_VESKSTEAM_VESKSTEAMWRAPPER_H

#include <atomic>
#include <cstdint>
#include <string>

#include "foundation/lifecycle/veskcomponentlife.h"
#include "module/veskmutex.h"
#include "module/vesksingleton.h"
#include "platformimpl/foundation/os/dynamiclibrary.h"

namespace Braxel {
namespace VESK {

/// The Steam client library, loaded from the SDK's own folder. Each entry point is looked up when
/// it is needed; a missing one is logged and the call goes on without it.
class VESKSteamWrapper {
public:
    static VESKSteamWrapper* GetInstance() {
        return VESKSingleton<VESKSteamWrapper>::GetInstance();
    }

    /// Starts the Steam interface, once: another thread that asks meanwhile is kept waiting.
    /// @param appID decimal; 0 or empty skips the question whether Steam must restart the game.
    /// @return whether the Steam interface is up.
    bool InitSteamApi(const std::string& appID);

    /// Shuts the Steam interface down for good, once no call is inside it. The library stays
    /// loaded.
    void UnInitSteamApi();

    /// The user's Steam id in decimal, and a session ticket in upper-case hexadecimal. Each is
    /// asked of Steam once and kept until Logout(); empty on a failure.
    std::string GetSteamID();
    std::string GetAuthSessionTicket();

    /// Cancels the ticket and forgets both texts.
    void Logout();

private:
    friend class VESKSingleton<VESKSteamWrapper>;
    VESKSteamWrapper() = default;

    bool StartSteamApi(const std::string& appID);
    bool LoadLibraryFile();
    void AskWhetherRunning();
    bool MustRestart(uint32_t appID);
    std::string FetchSteamID();
    std::string FetchTicket();
    void CancelTicket();
    bool Shutdown();

    os::DynamicLibrary Library();
    std::string Cached(const std::string& text);
    void Cache(std::string& text, const std::string& value);

    VESKMutex mMutex; // guards the three below; not held across calls into Steam
    os::DynamicLibrary mLibrary;
    std::string mSteamID;
    std::string mTicket;
    std::atomic<uint32_t> mAuthTicket{0};
    std::atomic<void*> steam_user_{nullptr};
    // Zero: it never calls back. Last: it waits for its thread, which uses the others.
    VESKComponentLife mLife{VESKComponentLife::Milliseconds(0)};
};

} // namespace VESK
} // namespace Braxel

#endif
