#ifndef VESK_SIMULATORS_STEAM_STEAM_USER_H
#define VESK_SIMULATORS_STEAM_STEAM_USER_H

#include <atomic>
#include <cstdint>

namespace vesk::steamsim {

/// The object whose address stands for Steam's user interface.
struct SteamUser {
    std::atomic<uint32_t> issuedTicket{0}; ///< handle of the ticket that is valid now; 0 = none
};

extern SteamUser theSteamUser;

} // namespace vesk::steamsim

#endif
