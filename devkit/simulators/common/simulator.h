#ifndef VESK_DEVKIT_SIMULATORS_COMMON_SIMULATOR_H
#define VESK_DEVKIT_SIMULATORS_COMMON_SIMULATOR_H

#include <cstdint>
#include <string>
#include <string_view>

#include "common/inifile.h"
#include "common/text.h"

namespace vesk::simulator {

/// "kz", "ferno" or "steam": what the names of the files beside a simulator begin with. Each of
/// them defines its own.
extern const char* const kName;

/// How the simulator behaves now: NAME_sim.ini beside the library. A call of an entry point makes
/// one, so that a test may change the file between two calls.
class Settings {
public:
    Settings();

    /// A key that is there without a value is an empty text, not the other value.
    std::string text(const char* key, const char* otherwise) const;

    /// Decimal, or hexadecimal behind "0x".
    int64_t number(const char* key, int64_t otherwise) const;

    /// Stays for the milliseconds of the setting @p key.
    void stay(const char* key) const;

private:
    const devkit::IniFile mFile;
};

/// Appends a line to NAME_sim_calls.txt beside the library.
void writeDown(std::string_view line);
void writeDown(const devkit::JsonLine& line);

} // namespace vesk::simulator

#endif
