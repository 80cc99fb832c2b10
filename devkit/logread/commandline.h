#ifndef VESK_DEVKIT_LOGREAD_COMMANDLINE_H
#define VESK_DEVKIT_LOGREAD_COMMANDLINE_H

#include <string>

namespace vesk::logread {

/// What the command line asks for.
struct CommandLine {
    std::string file;
    bool follow = false;
    bool json = false;
    bool redact = false;
    bool login = false;
    std::string level = "D";
    /// Empty: whatever the id.
    std::string sequenceId;
    /// A time, a time of day, or empty.
    std::string since;
    /// The exit code when there is nothing to do: a mistake, or the help was printed.
    int exitCode = -1;
};

CommandLine readCommandLine(int argc, char** argv);

} // namespace vesk::logread

#endif
