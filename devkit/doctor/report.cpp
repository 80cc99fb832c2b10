#include "report.h"

#include "common/jsonline.h"
#include "common/text.h"

namespace vesk::doctor {

namespace {

constexpr const char* kVerdicts[] = {"problem", "warning", "ok"};

const char* nameOf(Verdict verdict) {
    return kVerdicts[static_cast<size_t>(verdict)];
}

std::string asText(const Finding& finding) {
    std::string name = nameOf(finding.verdict);
    name.resize(9, ' ');
    const std::string remedy =
        finding.remedy.empty() ? "" : "\n         -> " + devkit::printable(finding.remedy);
    return name + devkit::printable(finding.check + ": " + finding.found) + remedy;
}

std::string asJson(const Finding& finding) {
    return devkit::JsonLine()
        .add("event", "check")
        .add("check", finding.check)
        .add("verdict", nameOf(finding.verdict))
        .add("found", finding.found)
        .add("remedy", finding.remedy)
        .text();
}

} // namespace

void Report::print(const Finding& finding) {
    const std::string line = mJson ? asJson(finding) : asText(finding);
    std::fprintf(mOutput, "%s\n", line.c_str());
}

void Report::printBriefly(const std::string& topic, const Findings& findings) {
    std::string words;
    for (const Finding& finding : findings) {
        if (!finding.brief.empty()) {
            words += (words.empty() ? "" : ", ") + finding.brief;
        }
    }
    if (!words.empty()) {
        print(ok(topic, words));
    }
}

int Report::finish() {
    for (const Verdict verdict : {Verdict::Problem, Verdict::Warning, Verdict::Ok}) {
        size_t& count = mCounts[static_cast<size_t>(verdict)];
        for (const auto& [topic, findings] : mTopics) {
            const bool briefly = verdict == Verdict::Ok && !mJson;
            for (const Finding& finding : findings) {
                if (finding.verdict == verdict) {
                    ++count;
                    if (!briefly) {
                        print(finding);
                    }
                }
            }
            if (briefly) {
                printBriefly(topic, findings);
            }
        }
    }
    const char* const format =
        mJson ? "{\"event\":\"sum\",\"problems\":%zu,\"warnings\":%zu,\"ok\":%zu}\n"
              : "problems: %zu, warnings: %zu, ok: %zu\n";
    std::fprintf(mOutput, format, mCounts[0], mCounts[1], mCounts[2]);
    return mCounts[0] == 0 ? 0 : 1;
}

} // namespace vesk::doctor
