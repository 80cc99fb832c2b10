#ifndef VESK_DEVKIT_CONSOLE_OPTIONS_H
#define VESK_DEVKIT_CONSOLE_OPTIONS_H

#include <optional>
#include <string>
#include <vector>

/// What the command line asks for.
struct Options {
    std::string complaint; ///< what is wrong with the command line, one sentence; or empty
    std::string help;      ///< a text that is asked for instead of anything else; or empty
    bool version = false;

    std::vector<std::string> words; ///< run in this order
    std::string channel;
    std::string extraJson;
    bool channelOnly = false;
    int timeout = 60; ///< seconds to wait for each result
    int linger = 1;   ///< seconds at most to stay after a logout
    bool json = false;
    std::optional<bool> drawCodes; ///< QR codes; on terminals unless told
    bool offline = false;          ///< the doctor leaves the backend alone
};

Options parseOptions(int argc, char** argv);

#endif
