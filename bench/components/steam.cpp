// A Steam client that answers at once and writes nothing down: what a login costs besides is the
// SDK's own work.
#include <cstdint>
#include <cstring>

#include "vesk/veskexport.h"

namespace {

int theUser = 0;

} // namespace

extern "C" {

VESK_API bool SteamAPI_IsSteamRunning() {
    return true;
}

VESK_API bool SteamAPI_RestartAppIfNecessary(uint32_t /*appID*/) {
    return false;
}

VESK_API bool SteamAPI_Init() {
    return true;
}

VESK_API void* SteamAPI_SteamUser_v020() {
    return &theUser;
}

VESK_API uint64_t SteamAPI_ISteamUser_GetSteamID(void* /*user*/) {
    return 76561198000000001;
}

VESK_API uint32_t SteamAPI_ISteamUser_GetAuthSessionTicket(void* /*user*/, void* buffer, int size,
                                                           uint32_t* written) {
    // As long as real ones are.
    constexpr uint32_t kTicketSize = 240;
    if (size < static_cast<int>(kTicketSize)) {
        return 0;
    }
    std::memset(buffer, 0x5A, kTicketSize);
    *written = kTicketSize;
    return 1;
}

VESK_API void SteamAPI_ISteamUser_CancelAuthTicket(void* /*user*/, uint32_t /*ticket*/) {}

VESK_API void SteamAPI_Shutdown() {}

} // extern "C"
