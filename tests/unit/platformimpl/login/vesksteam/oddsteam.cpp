// A Steam client with a user id beyond the signed range, a ticket that is larger than the buffer it
// was given, and an interface that starts for the app 480 only after a restart.
#include <cstdint>
#include <cstring>

#include "odd_steam_export.h"

namespace {

char theUser;

} // namespace

extern "C" {

ODD_STEAM_EXPORT bool SteamAPI_RestartAppIfNecessary(uint32_t appID) {
    return appID == 480;
}

ODD_STEAM_EXPORT bool SteamAPI_Init() {
    return true;
}

ODD_STEAM_EXPORT void* SteamAPI_SteamUser_v020() {
    return &theUser;
}

ODD_STEAM_EXPORT uint64_t SteamAPI_ISteamUser_GetSteamID(void*) {
    return 0x8000000000000001U;
}

ODD_STEAM_EXPORT uint32_t SteamAPI_ISteamUser_GetAuthSessionTicket(void*, void* buffer, int size,
                                                                   uint32_t* needed) {
    std::memset(buffer, 0xA5, static_cast<size_t>(size));
    *needed = 5000;
    return 7;
}

} // extern "C"
