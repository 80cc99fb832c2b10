#ifndef VESK_DEVKIT_CONSOLE_OPTIONS_H
#define VESK_DEVKIT_CONSOLE_OPTIONS_H

#include <chrono>
#include <string>
#include <vector>

enum class QrChoice { OnTerminals, Always, Never };

/// What the command line asks for.
struct Options {
    std::string complaint; ///< what is wrong with the command line, one sentence; or empty
    std::string help;      ///< a text that is asked for instead of anything else; or empty
    bool version = false;

    std::vector<std::string> words; ///< run in this order
    std::string channel;
    std::string extraJson;
    bool channelOnly = false;
    std::chrono::seconds timeout{60}; ///< how long to wait for each result
    std::chrono::seconds linger{1};   ///< how long to stay after a logout
    bool json = false;
    QrChoice qr = QrChoice::OnTerminals;
    bool offline = false; ///< the doctor leaves the backend alone
};

Options parseOptions(int argc, char** argv);

#endif
