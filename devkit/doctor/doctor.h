#ifndef VESK_DEVKIT_DOCTOR_DOCTOR_H
#define VESK_DEVKIT_DOCTOR_DOCTOR_H

#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "common/inifile.h"
#include "connection.h"

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

// Everything that is looked at, a function a topic.

constexpr const char* kConfigFile = "VESKConfig.ini";
constexpr const char* kTrustFile = "cacert.pem";

/// Whether a file or folder is there; no when nobody may know.
inline bool isThere(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::exists(path, ignored);
}

/// The SDK's library: whether it can be loaded, which version it is and, when this program uses it
/// already, whether it is the one that lies beside the program.
Findings checkLibrary(const std::filesystem::path& folder);

/// What the SDK writes: whether it can, how large the log is, whether a login is remembered.
Findings checkFolder(const std::filesystem::path& folder);

/// The texts of the return codes.
Finding checkMessages(const std::filesystem::path& folder);

/// The certificates that the SDK trusts.
/// @param now Unix seconds.
/// @param needed whether the backend's address is one of https.
Findings checkTrust(const std::filesystem::path& folder, const PemFile& trusted, int64_t now,
                    bool needed);

/// VESKConfig.ini as a whole: there at all, its encoding, its lines.
struct ConfigText {
    Findings findings;
    bool readable = false; ///< to the SDK; otherwise nothing in it is worth a word
    devkit::IniFile settings{{}};
};
ConfigText readConfig(const std::filesystem::path& folder);

/// Each key of docs/configuration.md, and keys that are none. No secret gets into a finding.
Findings checkSettings(const devkit::IniFile& config);

/// The channels: whether each one's component lies in the folder, is one for this system, has the
/// entry points that the SDK asks for, and has its settings.
/// @param config null when it is not readable.
Findings checkComponents(const std::filesystem::path& folder, const devkit::IniFile* config);

/// The components in the folder that are the dev kit's simulators, "a.dll, b.dll".
std::string simulatedComponents(const std::filesystem::path& folder);

/// What a try at the backend tells: proxy, name, connection, certificate, answer, clock; up to the
/// step that has failed.
Findings checkConnection(const BackendAddress& address, const Connection& connection,
                         const PemFile& trusted);

} // namespace vesk::doctor

#endif
