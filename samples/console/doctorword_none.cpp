#include "doctorword.h"

#include <cstdio>

int runDoctorWord(bool /*json*/, bool /*offline*/) {
    std::fputs("vesk-console: this one was built without the dev kit; use its vesk-doctor.\n",
               stderr);
    return 2;
}
