#ifndef VESK_DEVKIT_DOCTOR_FINDING_H
#define VESK_DEVKIT_DOCTOR_FINDING_H

#include <string>
#include <utility>
#include <vector>

namespace vesk::doctor {

enum class Verdict { Ok, Warning, Problem };

/// What one check has found.
struct Finding {
    Verdict verdict = Verdict::Ok;
    std::string check;  ///< what was looked at: a file, a setting, a channel, a step on the way
    std::string found;  ///< what it is like
    std::string remedy; ///< what to do, in plain words; empty when all is well
};

using Findings = std::vector<Finding>;

inline Finding ok(std::string check, std::string found) {
    return {Verdict::Ok, std::move(check), std::move(found), {}};
}

inline Finding warning(std::string check, std::string found, std::string remedy) {
    return {Verdict::Warning, std::move(check), std::move(found), std::move(remedy)};
}

inline Finding problem(std::string check, std::string found, std::string remedy) {
    return {Verdict::Problem, std::move(check), std::move(found), std::move(remedy)};
}

} // namespace vesk::doctor

#endif
