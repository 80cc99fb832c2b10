#ifndef VESK_SAMPLES_CONSOLE_OPTIONS_H
#define VESK_SAMPLES_CONSOLE_OPTIONS_H

#include <chrono>
#include <optional>
#include <string>
#include <vector>

/// What the command line asks for.
struct Options {
    std::vector<std::string> words; ///< login, autologin, status, watch, logout; run in this order
    std::string channel;
    std::string extraJson;
    bool channelOnly = false;
    std::chrono::seconds timeout{60}; ///< how long to wait for each result
    std::chrono::seconds linger{1};   ///< how long to stay after a logout
};

/// Says how the program is used; shown for a command line that cannot be understood.
extern const char* const kUsage;

/// @return nothing when the command line cannot be understood.
std::optional<Options> parseOptions(int argc, char** argv);

#endif
