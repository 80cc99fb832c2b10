// Finds out why logins do not work on a computer. It links no SDK, so it also runs where the
// library is missing or broken.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "doctor.h"

int main(int argc, char** argv) {
    try {
        vesk::doctor::DoctorOptions options;
        CLI::App app("Looks at everything that a login needs and says what is wrong and what to "
                     "do.",
                     "vesk-doctor");
        app.add_option("FOLDER", options.folder,
                       "where the SDK's library lies; the program's own folder when left out");
        app.add_flag("--json", options.json,
                     "one JSON object a line: check, verdict, found, remedy; the last is the sum");
        app.add_flag("--offline", options.offline, "do not try the backend");
        app.footer("No key, token or player gets into the output. Nothing is changed; a trial file "
                   "is made in\nthe folder and removed.\n\nexit status: 0 no problem (there may be "
                   "warnings), 1 a problem, 2 wrong command line");
        try {
            app.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            return app.exit(error) == 0 ? 0 : 2;
        }
        return vesk::doctor::runDoctor(options, stdout);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vesk-doctor: %s\n", error.what());
        return 1;
    }
}
