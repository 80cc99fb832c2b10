#ifndef VESK_DEVKIT_DOCTOR_REPORT_H
#define VESK_DEVKIT_DOCTOR_REPORT_H

#include <array>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace vesk::doctor {

enum class Verdict { Problem, Warning, Ok };

/// What one check has found.
struct Finding {
    Verdict verdict = Verdict::Ok;
    std::string check;  ///< what was looked at: a file, a setting, a channel, a step on the way
    std::string found;  ///< what it is like
    std::string remedy; ///< what to do, in plain words; empty when all is well
    std::string brief;  ///< the few words for a person when all is well; none: not worth telling
};

using Findings = std::vector<Finding>;

inline Finding ok(std::string check, std::string found, std::string brief = {}) {
    return {Verdict::Ok, std::move(check), std::move(found), {}, std::move(brief)};
}

inline Finding warning(std::string check, std::string found, std::string remedy) {
    return {Verdict::Warning, std::move(check), std::move(found), std::move(remedy), {}};
}

inline Finding problem(std::string check, std::string found, std::string remedy) {
    return {Verdict::Problem, std::move(check), std::move(found), std::move(remedy), {}};
}

inline void append(Findings& findings, const Findings& more) {
    findings.insert(findings.end(), more.begin(), more.end());
}

/// Prints findings, the worst first: as text for a person, who gets one line a topic of what is
/// right, or as JSON, one object a finding. Problems are printed at once.
class Report {
public:
    Report(std::FILE* output, bool json) : mOutput(output), mJson(json) {}

    /// @param topic what these findings have in common.
    void add(const std::string& topic, const Findings& findings);

    /// Prints the rest, and the sum. @return the program's exit status: 1 when there was a problem.
    int finish();

private:
    void addRight(const std::string& topic, const Finding& finding);
    void print(const Finding& finding);

    std::FILE* mOutput;
    bool mJson;
    Findings mWarnings;
    Findings mRight;
    std::array<size_t, 3> mCounts = {}; ///< one a verdict
};

} // namespace vesk::doctor

#endif
