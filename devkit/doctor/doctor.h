#ifndef VESK_DEVKIT_DOCTOR_DOCTOR_H
#define VESK_DEVKIT_DOCTOR_DOCTOR_H

#include <cstdio>
#include <string>

namespace vesk::doctor {

struct DoctorOptions {
    std::string
        folder;        ///< the library's; the one of the library in use, or the program's, if empty
    bool json = false; ///< one JSON object a finding
    bool offline = false; ///< do not try the backend
};

/// Looks at everything that a login needs and prints one finding a line to @p output. Reads only;
/// a trial file is made and removed to see whether the folder can be written to.
/// @return 0, or 1 when there is a problem.
int runDoctor(const DoctorOptions& options, std::FILE* output);

} // namespace vesk::doctor

#endif
