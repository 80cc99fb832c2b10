#include "helptexts.h"

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

constexpr Word kWords[] = {
    {"login", "log in through the channel", kLogin},
    {"autologin", "log in the player that this device remembers", kAutologin},
    {"status", "show the login that is held now", kStatus},
    {"watch", "wait until the SDK has got a new token for the login that is held", kWatch},
    {"logout", "log out of the channel and of the backend", kLogout},
    {"doctor", "find out why logins do not work here", kDoctor},
    {"help", "explain a word", kHelp},
};

} // namespace

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
