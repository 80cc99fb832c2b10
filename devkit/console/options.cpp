#include "options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

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
  --linger SECONDS    how long to stay after a logout, 1 unless given
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

constexpr const char* kLogin = R"(usage: vesk-console login --channel KZ|Ferno|Steam [options]

Logs in through the channel. A messenger shows a QR code first, which the player scans
within --timeout; Steam needs nobody. The result is the backend's.

  --extra-json JSON   extra data, a JSON object
  --timeout SECONDS   how long to wait: for a person with a telephone, say 120
  --no-qr             only the address of the code

A messenger whose component is missing never answers: see `vesk-console doctor`.
)";

constexpr const char* kAutologin = R"(usage: vesk-console autologin [options]

Logs in the player that the messenger KZ remembers on this device, without a code. Needs an
earlier login by KZ and a backend of your own (VESK_URL). Code 7 or 1001 is a refusal.
)";

constexpr const char* kStatus = R"(usage: vesk-console WORD [...] status

Shows the login that is held now; asks nobody. Fails when none is held or it has expired.
)";

constexpr const char* kWatch = R"(usage: vesk-console login watch --channel KZ|Ferno --timeout 400

Waits until the SDK has got a new token for the login that is held. It looks for one after
four minutes, and only when the old one is about to end.
)";

constexpr const char* kLogout = R"(usage: vesk-console WORD [...] logout [options]

Logs out of the channel, then of the backend.

  --channel NAME      the channel; the one that is logged in when it is left out
  --channel-only      keep the stored login and do not tell the backend
  --linger SECONDS    how long to stay, as the backend is told in the background; 1 unless
                      given
)";

constexpr const char* kDoctor = R"(usage: vesk-console doctor [--json] [--offline]

Looks at everything that a login needs and prints a line for each thing: ok, warning or
problem, and what to do about it. Fails when there is a problem. Shows no key and no token.

  --offline           do not try the backend

Where the SDK's library is missing this program does not start: vesk-doctor of the dev kit
does the same without it, and for any folder.
)";

constexpr const char* kHelp = R"(usage: vesk-console help [WORD]

Explains the program, or one word.
)";

/// A word of the command line.
struct Word {
    const char* name;
    const char* summary; ///< a line of the general help
    const char* help;    ///< what `help WORD` prints
};

constexpr Word kWords[] = {
    {"login", "log in through the channel", kLogin},
    {"autologin", "log in the player that this device remembers", kAutologin},
    {"status", "show the login that is held now", kStatus},
    {"watch", "wait until the SDK has got a new token for the login that is held", kWatch},
    {"logout", "log out of the channel and of the backend", kLogout},
    {"doctor", "find out why logins do not work here", kDoctor},
    {"help", "explain a word", kHelp},
};

constexpr long kLongestWait = 86400;

std::string inQuotes(const std::string& text) {
    return '"' + text + '"';
}

const Word* findWord(const std::string& name) {
    for (const Word& word : kWords) {
        if (name == word.name) {
            return &word;
        }
    }
    return nullptr;
}

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

/// The channels' names are the SDK's, which never answers a login through one that it does not
/// know.
std::string complaintAboutChannel(const std::string& name) {
    return name == "KZ" || name == "Ferno" || name == "Steam"
               ? ""
               : inQuotes(name) + " is no channel; there are KZ, Ferno and Steam, exactly so";
}

CLI::Validator seconds(long least) {
    return CLI::Validator(
        [least](const std::string& text) {
            long value = 0;
            return CLI::detail::lexical_cast(text, value) && value >= least && value <= kLongestWait
                       ? std::string()
                       : "needs a number of seconds from " + std::to_string(least) + " on, not " +
                             inQuotes(text);
        },
        "");
}

/// What is wrong with a command line whose options are all right.
std::string complaintAbout(const Options& options) {
    const auto& words = options.words;
    const auto holds = [&](const char* word) {
        return std::find(words.begin(), words.end(), word) != words.end();
    };
    for (const std::string& word : words) {
        if (findWord(word) == nullptr) {
            return inQuotes(word) + " is neither a word nor an option";
        }
    }
    if (words.empty()) {
        return "there is no word that says what to do";
    }
    if (holds("doctor") && words.size() > 1) {
        return "doctor stands alone, as it looks at what the other words need";
    }
    if (options.offline && !holds("doctor")) {
        return "--offline goes with doctor only";
    }
    if (options.json && options.qr == QrChoice::Always) {
        return "--json and --qr exclude each other";
    }
    if (holds("login") && options.channel.empty()) {
        return "login needs --channel KZ, Ferno or Steam";
    }
    return {};
}

/// `help` and `help WORD`.
Options helpOn(const std::string& name) {
    Options options;
    const Word* const word = findWord(name);
    if (name.empty()) {
        options.help = generalHelp();
    } else if (word != nullptr) {
        options.help = word->help;
    } else {
        options.complaint = inQuotes(name) + " is no word of this program";
    }
    return options;
}

} // namespace

Options parseOptions(int argc, char** argv) {
    if (argc > 1 && std::string(argv[1]) == "help") {
        return helpOn(argc > 2 ? argv[2] : "");
    }
    Options options;
    bool help = false;
    bool draw = false;
    long timeout = options.timeout.count();
    long linger = options.linger.count();
    CLI::App app;
    app.allow_extras();
    app.set_help_flag();
    app.option_defaults()->take_last();
    app.add_flag("-h,--help", help);
    app.add_flag("--version", options.version);
    app.add_option("--channel", options.channel)
        ->check(CLI::Validator(complaintAboutChannel, ""))
        ->type_name("NAME");
    app.add_option("--extra-json", options.extraJson)->type_name("JSON");
    app.add_option("--timeout", timeout)->check(seconds(1))->type_name("SECONDS");
    app.add_option("--linger", linger)->check(seconds(0))->type_name("SECONDS");
    app.add_flag("--channel-only", options.channelOnly);
    app.add_flag("--json", options.json);
    const CLI::Option* const qr = app.add_flag("--qr,!--no-qr", draw);
    app.add_flag("--offline", options.offline);
    try {
        app.parse(argc, argv);
        options.words = app.remaining();
        options.timeout = std::chrono::seconds(timeout);
        options.linger = std::chrono::seconds(linger);
        if (qr->count() > 0) {
            options.qr = draw ? QrChoice::Always : QrChoice::Never;
        }
        if (help) {
            options.help = generalHelp();
        } else if (!options.version) {
            options.complaint = complaintAbout(options);
        }
    } catch (const CLI::ParseError& error) {
        options.complaint = error.what();
    }
    return options;
}
