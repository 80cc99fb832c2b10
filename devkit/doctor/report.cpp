#include "report.h"

#include "common/jsonline.h"
#include "common/text.h"

namespace vesk::doctor {

namespace {

constexpr const char* kVerdicts[] = {"problem", "warning", "ok"};

std::string asText(const Finding& finding, std::string verdict) {
    verdict.resize(9, ' ');
    const std::string remedy =
        finding.remedy.empty() ? "" : "\n         -> " + devkit::printable(finding.remedy);
    return verdict + devkit::printable(finding.check + ": " + finding.found) + remedy;
}

std::string asJson(const Finding& finding, const char* verdict) {
    return devkit::JsonLine()
        .add("event", "check")
        .add("check", finding.check)
        .add("verdict", verdict)
        .add("found", finding.found)
        .add("remedy", finding.remedy)
        .text();
}

} // namespace

void Report::add(const std::string& topic, const Findings& findings) {
    for (const Finding& finding : findings) {
        ++mCounts[static_cast<size_t>(finding.verdict)];
        if (finding.verdict == Verdict::Problem) {
            print(finding);
        } else if (finding.verdict == Verdict::Warning) {
            mWarnings.push_back(finding);
        } else {
            addRight(topic, finding);
        }
    }
    std::fflush(mOutput); // the backend may be waited for
}

void Report::addRight(const std::string& topic, const Finding& finding) {
    if (mJson) {
        mRight.push_back(finding);
    } else if (!finding.brief.empty() && !mRight.empty() && mRight.back().check == topic) {
        mRight.back().found += ", " + finding.brief;
    } else if (!finding.brief.empty()) {
        mRight.push_back(ok(topic, finding.brief));
    }
}

int Report::finish() {
    for (const Findings& findings : {mWarnings, mRight}) {
        for (const Finding& finding : findings) {
            print(finding);
        }
    }
    const char* const format =
        mJson ? "{\"event\":\"sum\",\"problems\":%zu,\"warnings\":%zu,\"ok\":%zu}\n"
              : "problems: %zu, warnings: %zu, ok: %zu\n";
    std::fprintf(mOutput, format, mCounts[0], mCounts[1], mCounts[2]);
    return mCounts[0] == 0 ? 0 : 1;
}

void Report::print(const Finding& finding) {
    const char* const verdict = kVerdicts[static_cast<size_t>(finding.verdict)];
    const std::string line = mJson ? asJson(finding, verdict) : asText(finding, verdict);
    std::fprintf(mOutput, "%s\n", line.c_str());
}

} // namespace vesk::doctor
