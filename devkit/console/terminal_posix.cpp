#include <cstdlib>
#include <string>
#include <unistd.h>

#include "console.h"

Terminal::Terminal() : mIsTerminal(isatty(STDERR_FILENO) == 1) {
    const char* kind = std::getenv("TERM");
    mHasColours = mIsTerminal && kind != nullptr && std::string(kind) != "dumb";
}
