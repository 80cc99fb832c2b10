#include "options.h"

#include <algorithm>
#include <cstdlib>

const char* const kUsage =
    R"(usage: vesk-console WORD [WORD ...] [--channel NAME] [options]

Runs the words one after another; `login status logout` is a whole visit. Each result
is one line of JSON on standard error (standard output carries the SDK's own trace).

words
  login       log in through the channel
  autologin   log in the player that this device remembers
  status      show the login that is held now
  watch       wait until the SDK has got a new token for the login that is held; it
              looks for one after four minutes, so give a --timeout of 400
  logout      log out of the channel and of the backend

options
  --channel NAME      KZ, Ferno or Steam; login needs it, logout takes the channel
                      that is logged in when it is left out
  --channel-only      logout keeps the stored login and does not tell the backend
  --extra-json JSON   extra data of the login, a JSON object
  --timeout SECONDS   how long to wait for each result, 60 unless given
  --linger SECONDS    how long to stay after a logout, which the backend is told in
                      the background; 1 unless given

exit status: 0 every word succeeded, 1 one did not, 2 the command line is wrong
)";

namespace {

bool isWord(const std::string& text) {
    return text == "login" || text == "autologin" || text == "status" || text == "watch" ||
           text == "logout";
}

/// Stores the value of an option that takes one.
bool setValue(Options& options, const std::string& name, const char* value) {
    if (name == "--channel") {
        options.channel = value;
    } else if (name == "--extra-json") {
        options.extraJson = value;
    } else if (name == "--timeout") {
        options.timeout = std::chrono::seconds(std::atoi(value));
        return options.timeout.count() > 0;
    } else if (name == "--linger") {
        options.linger = std::chrono::seconds(std::atoi(value));
        return options.linger.count() >= 0;
    } else {
        return false;
    }
    return true;
}

bool isComplete(const Options& options) {
    const auto& words = options.words;
    const bool logsIn = std::find(words.begin(), words.end(), "login") != words.end();
    return !words.empty() && (!logsIn || !options.channel.empty());
}

} // namespace

std::optional<Options> parseOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (isWord(argument)) {
            options.words.push_back(argument);
        } else if (argument == "--channel-only") {
            options.channelOnly = true;
        } else if (i + 1 == argc || !setValue(options, argument, argv[++i])) {
            return std::nullopt;
        }
    }
    return isComplete(options) ? std::optional<Options>(options) : std::nullopt;
}
