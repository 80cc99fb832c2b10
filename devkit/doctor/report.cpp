#include "report.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "printable.h"

namespace vesk::doctor {

namespace {

constexpr const char* kVerdicts[] = {"ok", "warning", "problem"};

size_t indexOf(Verdict verdict) {
    return static_cast<size_t>(verdict);
}

std::string asJson(const Finding& finding) {
    rapidjson::StringBuffer json;
    rapidjson::Writer<rapidjson::StringBuffer> writer(json);
    const auto add = [&](const char* name, const std::string& value) {
        writer.Key(name);
        writer.String(printable(value).c_str());
    };
    writer.StartObject();
    add("event", "check");
    add("check", finding.check);
    add("verdict", kVerdicts[indexOf(finding.verdict)]);
    add("found", finding.found);
    add("remedy", finding.remedy);
    writer.EndObject();
    return json.GetString();
}

} // namespace

void Report::print(const Findings& findings) {
    for (const Finding& finding : findings) {
        print(finding);
    }
}

void Report::print(const Finding& finding) {
    ++mCounts[indexOf(finding.verdict)];
    if (mJson) {
        std::fprintf(mOutput, "%s\n", asJson(finding).c_str());
    } else {
        std::fprintf(mOutput, "%-8s %s: %s\n", kVerdicts[indexOf(finding.verdict)],
                     printable(finding.check).c_str(), printable(finding.found).c_str());
        if (!finding.remedy.empty()) {
            std::fprintf(mOutput, "         -> %s\n", printable(finding.remedy).c_str());
        }
    }
    std::fflush(mOutput);
}

int Report::finish() {
    const char* const format =
        mJson ? "{\"event\":\"sum\",\"problems\":%zu,\"warnings\":%zu,\"ok\":%zu}\n"
              : "problems: %zu, warnings: %zu, ok: %zu\n";
    const size_t problems = mCounts[indexOf(Verdict::Problem)];
    std::fprintf(mOutput, format, problems, mCounts[indexOf(Verdict::Warning)],
                 mCounts[indexOf(Verdict::Ok)]);
    return problems == 0 ? 0 : 1;
}

} // namespace vesk::doctor
