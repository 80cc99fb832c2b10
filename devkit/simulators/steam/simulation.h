#ifndef VESK_SIMULATORS_STEAM_SIMULATION_H
#define VESK_SIMULATORS_STEAM_SIMULATION_H

#include <cstdint>
#include <string>
#include <vector>

namespace vesk::steamsim {

/// How the simulated Steam client behaves now: the settings of steam_sim.ini (see there), and a
/// line for every call in steam_sim_calls.txt. Both lie beside the library.
///
/// A call of an export makes one, so that a test may change the file between two calls.
class Simulation {
public:
    /// Reads the settings and writes @p exportName down as called.
    explicit Simulation(const char* exportName);

    bool flag(const char* key, bool otherwise) const;
    uint64_t number(const char* key, uint64_t otherwise) const;
    std::vector<uint8_t> bytes(const char* key, const char* otherwise) const;

    /// Writes down that the call came with an argument which a real client would not accept.
    void complain(const char* what) const;

private:
    std::string text(const char* key, const char* otherwise) const;

    std::string mExportName;
    std::string mSettings;
};

} // namespace vesk::steamsim

#endif
