#include "options.h"

#include <algorithm>
#include <cstdlib>

#include "helptexts.h"

namespace {

constexpr long kLongestWait = 86400;

std::string inQuotes(const std::string& text) {
    return '"' + text + '"';
}

bool contains(const std::vector<std::string>& words, const char* word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// Takes a number of seconds; complains when the text is none, or less than @p least.
std::chrono::seconds seconds(Options& options, const std::string& name, const std::string& text,
                             long least) {
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || value < least || value > kLongestWait) {
        options.complaint = name + " needs a number of seconds from " + std::to_string(least) +
                            " on, not " + inQuotes(text);
    }
    return std::chrono::seconds(value);
}

bool isFlag(Options& options, const std::string& name) {
    if (name == "--channel-only") {
        options.channelOnly = true;
    } else if (name == "--json") {
        options.json = true;
    } else if (name == "--qr") {
        options.qr = QrChoice::Always;
    } else if (name == "--no-qr") {
        options.qr = QrChoice::Never;
    } else if (name == "--offline") {
        options.offline = true;
    } else if (name == "--help" || name == "-h") {
        options.help = true;
    } else if (name == "--version") {
        options.version = true;
    } else {
        return false;
    }
    return true;
}

bool takesValue(const std::string& name) {
    return name == "--channel" || name == "--extra-json" || name == "--timeout" ||
           name == "--linger";
}

void setValue(Options& options, const std::string& name, const std::string& value) {
    if (name == "--channel") {
        options.channel = value;
        // The SDK never answers a login through a channel that it does not know.
        if (value != "KZ" && value != "Ferno" && value != "Steam") {
            options.complaint =
                inQuotes(value) + " is no channel; there are KZ, Ferno and Steam, exactly so";
        }
    } else if (name == "--extra-json") {
        options.extraJson = value;
    } else if (name == "--timeout") {
        options.timeout = seconds(options, name, value, 1);
    } else {
        options.linger = seconds(options, name, value, 0);
    }
}

/// What is wrong with a command line whose parts are all known.
std::string complaintAbout(const Options& options) {
    const bool doctor = contains(options.words, "doctor");
    if (options.words.empty()) {
        return "there is no word that says what to do";
    }
    if (doctor && options.words.size() > 1) {
        return "doctor stands alone, as it looks at what the other words need";
    }
    if (options.offline && !doctor) {
        return "--offline goes with doctor only";
    }
    if (options.json && options.qr == QrChoice::Always) {
        return "--json and --qr exclude each other";
    }
    if (contains(options.words, "login") && options.channel.empty()) {
        return "login needs --channel KZ, Ferno or Steam";
    }
    return {};
}

} // namespace

Options parseOptions(int argc, char** argv) {
    Options options;
    const std::vector<std::string> arguments(argv + 1, argv + std::max(argc, 1));
    if (!arguments.empty() && arguments[0] == "help") {
        options.help = true;
        options.helpOn = arguments.size() > 1 ? arguments[1] : "";
        if (!options.helpOn.empty() && findWord(options.helpOn) == nullptr) {
            options.complaint = inQuotes(options.helpOn) + " is no word of this program";
        }
        return options;
    }
    for (size_t i = 0; i < arguments.size() && options.complaint.empty(); ++i) {
        const std::string& argument = arguments[i];
        if (findWord(argument) != nullptr) {
            options.words.push_back(argument);
        } else if (takesValue(argument)) {
            if (i + 1 == arguments.size()) {
                options.complaint = argument + " needs a value";
            } else {
                setValue(options, argument, arguments[++i]);
            }
        } else if (!isFlag(options, argument)) {
            options.complaint = inQuotes(argument) + " is neither a word nor an option";
        }
    }
    if (options.complaint.empty() && !options.help && !options.version) {
        options.complaint = complaintAbout(options);
    }
    return options;
}
