// The entry points that every variant of the stand-in has.
#include <algorithm>

#include "simulation.h"
#include "steam_sim_export.h"
#include "steam_user.h"

using vesk::steamsim::Simulation;
using vesk::steamsim::theSteamUser;

vesk::steamsim::SteamUser vesk::steamsim::theSteamUser;

namespace {

bool isTheUser(const void* user, const Simulation& simulation) {
    if (user != &theSteamUser) {
        simulation.complain("not the user interface");
    }
    return user == &theSteamUser;
}

} // namespace

extern "C" {

STEAM_SIM_EXPORT bool SteamAPI_IsSteamRunning() {
    return Simulation("SteamAPI_IsSteamRunning").flag("running", true);
}

STEAM_SIM_EXPORT uint64_t SteamAPI_ISteamUser_GetSteamID(void* user) {
    const Simulation simulation("SteamAPI_ISteamUser_GetSteamID");
    if (!isTheUser(user, simulation)) {
        return 0;
    }
    return simulation.number("steamid", 76561198000000001);
}

STEAM_SIM_EXPORT uint32_t SteamAPI_ISteamUser_GetAuthSessionTicket(void* user, void* buffer,
                                                                   int bufferSize, uint32_t* size) {
    const Simulation simulation("SteamAPI_ISteamUser_GetAuthSessionTicket");
    const auto ticket = simulation.bytes("ticket", "0AFF");
    if (!isTheUser(user, simulation) || ticket.size() > static_cast<size_t>(bufferSize)) {
        return 0;
    }
    std::copy(ticket.begin(), ticket.end(), static_cast<uint8_t*>(buffer));
    *size = static_cast<uint32_t>(ticket.size());
    const auto handle = static_cast<uint32_t>(simulation.number("ticket_handle", 1));
    theSteamUser.issuedTicket = handle;
    return handle;
}

STEAM_SIM_EXPORT void SteamAPI_ISteamUser_CancelAuthTicket(void* user, uint32_t ticket) {
    const Simulation simulation("SteamAPI_ISteamUser_CancelAuthTicket");
    if (isTheUser(user, simulation) && ticket != theSteamUser.issuedTicket) {
        simulation.complain("not the ticket that was issued");
    }
}

} // extern "C"
