#include <cstdio>
#include <exception>

#include "doctor.h"
#include "doctorword.h"

int runDoctorWord(bool json, bool offline) {
    vesk::doctor::DoctorOptions options;
    options.json = json;
    options.offline = offline;
    try {
        return vesk::doctor::runDoctor(options, stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vesk-console: %s\n", error.what());
        return 1;
    }
}
