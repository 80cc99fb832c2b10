#include <CLI/CLI.hpp>
#include <algorithm>

#include "console.h"

namespace {

constexpr const char* kBegin = R"(usage: vesk-console WORD [WORD ...] [--channel NAME] [options]
       vesk-console help WORD

Logs in and out as a game does. Words run one after another: `login status logout` is a
whole visit.

words
)";

constexpr const char* kEnd = R"(
options
  --channel NAME      KZ, Ferno or Steam
  --timeout SECONDS   how long to wait for each result, 60 unless given
  --linger SECONDS    how long at most to stay after a logout, 1 unless given
  --channel-only      logout keeps the stored login and does not tell the backend
  --extra-json JSON   extra data of a login, a JSON object
  --offline           doctor does not try the backend
  --json              one JSON object a line, for scripts
  --qr, --no-qr       draw QR codes, or do not; they are drawn on a terminal unless told
  --help, --version   this text; the version of the SDK in use

Results go to standard error. Standard output is the SDK's own trace and no part of this
program's answer: on a terminal, put it aside with `>trace.txt`. Tokens are never shown,
only their first four characters and their length.

exit status: 0 every word succeeded, 1 one did not, 2 the command line is wrong
)";

/// A word of the command line.
struct Word {
    const char* name;
    const char* summary; ///< a line of the general help
    const char* help;    ///< what `help WORD` prints
};

constexpr Word kWords[] = {
    {"login", "log in through the channel",
     R"(usage: vesk-console login --channel KZ|Ferno|Steam [options]

Logs in through the channel. A messenger shows a QR code first, which the player scans
within --timeout; Steam needs nobody. The result is the backend's.

  --extra-json JSON   extra data, a JSON object
  --timeout SECONDS   how long to wait: for a person with a telephone, say 120
  --no-qr             only the address of the code

A messenger whose component is missing never answers: see `vesk-console doctor`.
)"},
    {"autologin", "log in the player that this device remembers",
     R"(usage: vesk-console autologin [options]

Logs in the player that the messenger KZ remembers on this device, without a code. Needs an
earlier login by KZ and a backend of your own (VESK_URL). Code 7 or 1001 is a refusal.
)"},
    {"status", "show the login that is held now",
     R"(usage: vesk-console WORD [...] status

Shows the login that is held now; asks nobody. Fails when none is held or it has expired.
)"},
    {"watch", "wait until the SDK has got a new token for the login that is held",
     R"(usage: vesk-console login watch --channel KZ|Ferno --timeout 400

Waits until the SDK has got a new token for the login that is held. It looks for one after
four minutes, and only when the old one is about to end.
)"},
    {"logout", "log out of the channel and of the backend",
     R"(usage: vesk-console WORD [...] logout [options]

Logs out of the channel, then of the backend.

  --channel NAME      the channel; the one that is logged in when it is left out
  --channel-only      keep the stored login and do not tell the backend
  --linger SECONDS    how long at most to stay, as the backend is told in the background;
                      1 unless given
)"},
    {"doctor", "find out why logins do not work here",
     R"(usage: vesk-console doctor [--json] [--offline]

Looks at everything that a login needs and prints a line for each thing: ok, warning or
problem, and what to do about it. Fails when there is a problem. Shows no key and no token.

  --offline           do not try the backend

Where the SDK's library is missing this program does not start: vesk-doctor of the dev kit
does the same without it, and for any folder.
)"},
    {"help", "explain a word",
     R"(usage: vesk-console help [WORD]

Explains the program, or one word.
)"},
};

std::string generalHelp() {
    constexpr size_t kWidth = 12;
    std::string text = kBegin;
    for (const Word& word : kWords) {
        std::string name = word.name;
        name.resize(kWidth, ' ');
        text += "  " + name + word.summary + "\n";
    }
    return text + kEnd;
}

/// `help` and `help WORD`; empty when there is no such word.
std::string helpOn(const std::string& name) {
    for (const Word& word : kWords) {
        if (name == word.name) {
            return word.help;
        }
    }
    return name.empty() ? generalHelp() : std::string();
}

/// What is wrong with a command line whose options and words are all right.
std::string complaintAbout(const Options& options) {
    const auto& words = options.words;
    const auto holds = [&](const char* word) {
        return std::find(words.begin(), words.end(), word) != words.end();
    };
    if (words.empty()) {
        return "there is no word that says what to do";
    }
    if (holds("doctor") && words.size() > 1) {
        return "doctor stands alone, as it looks at what the other words need";
    }
    if (options.offline && !holds("doctor")) {
        return "--offline goes with doctor only";
    }
    if (options.json && options.drawCodes.value_or(false)) {
        return "--json and --qr exclude each other";
    }
    if (holds("login") && options.channel.empty()) {
        return "login needs --channel KZ, Ferno or Steam";
    }
    return {};
}

void define(CLI::App& app, Options& options) {
    constexpr int kLongestWait = 86400;
    std::vector<std::string> words;
    for (const Word& word : kWords) {
        words.emplace_back(word.name);
    }
    words.pop_back(); // help stands in front of a word
    app.add_option("WORD", options.words)->check(CLI::IsMember(words));
    app.option_defaults()->take_last();
    app.set_version_flag("--version",
                         std::string("vesk-console with VESKCore ") + vesk_version() + "\n");
    // The SDK never answers a login through a channel that it does not know.
    app.add_option("--channel", options.channel)->check(CLI::IsMember({"KZ", "Ferno", "Steam"}));
    app.add_option("--extra-json", options.extraJson);
    app.add_option("--timeout", options.timeout)->check(CLI::Range(1, kLongestWait));
    app.add_option("--linger", options.linger)->check(CLI::Range(0, kLongestWait));
    app.add_flag("--channel-only", options.channelOnly);
    app.add_flag("--json", options.json);
    app.add_flag("--qr,!--no-qr", options.drawCodes);
    app.add_flag("--offline", options.offline);
}

} // namespace

Options parseOptions(int argc, char** argv) {
    Options options;
    if (argc > 1 && std::string(argv[1]) == "help") {
        options.help = helpOn(argc > 2 ? argv[2] : "");
        options.complaint = options.help.empty() ? "there is no such word to explain" : "";
        return options;
    }
    CLI::App app;
    app.set_help_flag("-h,--help");
    define(app, options);
    try {
        app.parse(argc, argv);
        options.complaint = complaintAbout(options);
    } catch (const CLI::CallForHelp&) {
        options.help = generalHelp();
    } catch (const CLI::CallForVersion& version) {
        options.help = version.what();
    } catch (const CLI::ParseError& error) {
        options.complaint = error.what();
    }
    return options;
}
