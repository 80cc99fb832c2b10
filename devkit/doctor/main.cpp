// Finds out why logins do not work on a computer. It links no SDK, so it also runs where the
// library is missing or broken.
#include <cstdio>
#include <exception>
#include <string>

#include "doctor.h"

namespace {

constexpr const char* kHelp =
    R"(usage: vesk-doctor [FOLDER] [--json] [--offline]

Looks at everything that a login needs and says what is wrong and what to do. FOLDER is
where the SDK's library lies; the program's own folder when it is left out.

  --json     one JSON object a line: check, verdict, found, remedy; the last is the sum
  --offline  do not try the backend

No key, token or player gets into the output. Nothing is changed; a trial file is made in
the folder and removed.

exit status: 0 no problem (there may be warnings), 1 a problem, 2 wrong command line
)";

} // namespace

int main(int argc, char** argv) {
    vesk::doctor::DoctorOptions options;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--help" || argument == "-h") {
            std::fputs(kHelp, stdout);
            return 0;
        }
        if (argument == "--json") {
            options.json = true;
        } else if (argument == "--offline") {
            options.offline = true;
        } else if (argument.empty() || argument[0] == '-' || !options.folder.empty()) {
            std::fprintf(stderr, "vesk-doctor: \"%s\" is not understood; see vesk-doctor --help\n",
                         argument.c_str());
            return 2;
        } else {
            options.folder = argument;
        }
    }
    try {
        return vesk::doctor::runDoctor(options, stdout);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vesk-doctor: %s\n", error.what());
        return 1;
    }
}
