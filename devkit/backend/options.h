#ifndef VESK_DEVKIT_BACKEND_OPTIONS_H
#define VESK_DEVKIT_BACKEND_OPTIONS_H

#include <string>

namespace vesk::backend {

/// What the command line asks for.
struct Options {
    /// 0 takes any free port.
    int port = 0;
    int controlPort = 0;
    bool tls = false;
    /// File for the PEM of the CA; empty writes none.
    std::string caOut;
    std::string gameId = "1106";
    std::string key = "dev-key";
    /// How many seconds a request's "ts" may lie before or after the backend's clock.
    long long maxSkew = 300;
    bool help = false;
};

/// Reads the command line into `options`.
/// @return an empty text, or what is wrong with the command line.
std::string parseOptions(int argc, const char* const* argv, Options& options);

/// The text that `--help` prints.
const char* usageText();

} // namespace vesk::backend

#endif
