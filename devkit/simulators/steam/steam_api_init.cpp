// The one entry point without which a client cannot be used at all.
#include "simulation.h"
#include "steam_sim_export.h"

extern "C" STEAM_SIM_EXPORT bool SteamAPI_Init() {
    return vesk::steamsim::Simulation("SteamAPI_Init").flag("init", true);
}
