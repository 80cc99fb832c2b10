// Entry points that a client of another version may lack.
#include "simulation.h"
#include "steam_sim_export.h"
#include "steam_user.h"

using vesk::steamsim::Simulation;

extern "C" {

STEAM_SIM_EXPORT bool SteamAPI_RestartAppIfNecessary(uint32_t /*appId*/) {
    return Simulation("SteamAPI_RestartAppIfNecessary").flag("restart", false);
}

STEAM_SIM_EXPORT void* SteamAPI_SteamUser_v020() {
    const Simulation simulation("SteamAPI_SteamUser_v020");
    return simulation.flag("user_null", false) ? nullptr : &vesk::steamsim::theSteamUser;
}

STEAM_SIM_EXPORT void SteamAPI_Shutdown() {
    Simulation("SteamAPI_Shutdown");
}

} // extern "C"
