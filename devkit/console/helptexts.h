#ifndef VESK_DEVKIT_CONSOLE_HELPTEXTS_H
#define VESK_DEVKIT_CONSOLE_HELPTEXTS_H

#include <string>

/// A word of the command line.
struct Word {
    const char* name;
    const char* summary; ///< a line of the general help
    const char* help;    ///< what `help WORD` prints
};

/// Null when there is no such word.
const Word* findWord(const std::string& name);

/// What --help prints.
std::string generalHelp();

#endif
