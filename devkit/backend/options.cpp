#include "options.h"

#include <charconv>
#include <functional>
#include <map>

namespace vesk::backend {

namespace {

constexpr long long kMaxPort = 65535;
constexpr long long kMaxSkewLimit = 10LL * 365 * 24 * 3600;

bool readNumber(const std::string& text, long long max, long long& number) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end && number >= 0 && number <= max;
}

bool readPort(const std::string& text, int& port) {
    long long number = 0;
    if (!readNumber(text, kMaxPort, number)) {
        return false;
    }
    port = static_cast<int>(number);
    return true;
}

using ValueReader = std::function<bool(const std::string&)>;

std::map<std::string, ValueReader> valueReaders(Options& options) {
    const auto textInto = [](std::string& target) {
        return [&target](const std::string& text) {
            target = text;
            return true;
        };
    };
    return {
        {"--port", [&](const std::string& text) { return readPort(text, options.port); }},
        {"--control-port",
         [&](const std::string& text) { return readPort(text, options.controlPort); }},
        {"--max-skew",
         [&](const std::string& text) { return readNumber(text, kMaxSkewLimit, options.maxSkew); }},
        {"--ca-out", textInto(options.caOut)},
        {"--game-id", textInto(options.gameId)},
        {"--key", textInto(options.key)},
    };
}

} // namespace

std::string parseOptions(int argc, const char* const* argv, Options& options) {
    const auto readers = valueReaders(options);
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        if (name == "--help") {
            options.help = true;
            continue;
        }
        if (name == "--tls") {
            options.tls = true;
            continue;
        }
        const auto reader = readers.find(name);
        if (reader == readers.end()) {
            return "unknown option " + name;
        }
        if (i + 1 == argc) {
            return name + " needs a value";
        }
        const std::string value = argv[++i];
        if (!reader->second(value)) {
            return name + " does not take the value '" + value + "'";
        }
    }
    if (!options.caOut.empty() && !options.tls) {
        return "--ca-out needs --tls";
    }
    return {};
}

const char* usageText() {
    return "usage: vesk-devbackend [--port N] [--control-port N] [--tls] [--ca-out FILE]\n"
           "                       [--game-id ID] [--key KEY] [--max-skew SECONDS]\n"
           "A login backend for development, on loopback only. Ports default to any free port,\n"
           "the game id to 1106, the key to dev-key, the skew to 300 seconds.\n";
}

} // namespace vesk::backend
