#ifndef VESK_DEVKIT_DOCTOR_REPORT_H
#define VESK_DEVKIT_DOCTOR_REPORT_H

#include <cstddef>
#include <cstdio>

#include "finding.h"

namespace vesk::doctor {

/// Prints findings as they come, as text or as JSON, one object a line.
class Report {
public:
    Report(std::FILE* output, bool json) : mOutput(output), mJson(json) {}

    void print(const Findings& findings);

    /// Prints the sum. @return the program's exit status: 1 when there was a problem.
    int finish();

private:
    void print(const Finding& finding);

    std::FILE* mOutput;
    bool mJson;
    size_t mCounts[3] = {};
};

} // namespace vesk::doctor

#endif
