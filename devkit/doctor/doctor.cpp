#include "doctor.h"

#include <ctime>

#include "common/system.h"
#include "common/text.h"
#include "module.h"

namespace fs = std::filesystem;

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

fs::path folderOf(const DoctorOptions& options) {
    if (!options.folder.empty()) {
        return fs::absolute(options.folder);
    }
    const fs::path loaded = loadedSdk().path;
    return loaded.empty() ? devkit::ownFolder() : loaded.parent_path();
}

/// One friendly line for what stands in for the real thing.
Findings describeSimulated(const std::string& parts) {
    if (parts.empty()) {
        return {};
    }
    const std::string found =
        parts + ": from the dev kit, fine for trying things out; players need the real ones";
    return {ok("simulated", found, found)};
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

int runDoctor(const DoctorOptions& options, std::FILE* output) {
    const fs::path folder = folderOf(options);
    const ConfigText config = readConfig(folder);
    const std::string url = config.settings.value("VESK_URL");
    const BackendAddress address(url);
    const PemFile trusted(devkit::readFile(folder / kTrustFile));
    std::string simulated = simulatedComponents(folder);

    Report report(output, options.json);
    report.add("library", checkLibrary(folder));
    report.add("files", checkFolder(folder));
    report.add("files", config.findings);
    report.add("files", {checkMessages(folder)});
    report.add("files", checkTrust(folder, trusted, std::time(nullptr), address.isSecure()));
    if (config.readable) {
        report.add("settings", checkSettings(config.settings));
    }
    report.add("channels", checkComponents(folder, config.readable ? &config.settings : nullptr));
    if (address.isValid && !options.offline) {
        if (!options.json) {
            std::fputs("asking the backend, for 15 seconds at most ...\n", stderr);
        }
        const Connection connection = tryConnection(url, folder / kTrustFile);
        report.add("backend", checkConnection(address, connection, trusted));
        if (connection.simulated) {
            simulated += simulated.empty() ? "the backend" : ", the backend";
        }
    }
    report.add("simulated", describeSimulated(simulated));
    return report.finish();
}

} // namespace vesk::doctor
