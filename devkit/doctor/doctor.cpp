#include "doctor.h"

#include <ctime>

#include "checks.h"
#include "common/file.h"
#include "common/ownmodule.h"
#include "loadedsdk.h"
#include "report.h"

namespace fs = std::filesystem;

namespace vesk::doctor {

namespace {

fs::path folderOf(const DoctorOptions& options) {
    if (!options.folder.empty()) {
        return fs::absolute(options.folder);
    }
    const fs::path loaded = loadedSdk().path;
    return loaded.empty() ? devkit::ownFolder() : loaded.parent_path();
}

/// One friendly line for what stands in for the real thing.
Findings describeSimulated(const std::vector<std::string>& parts) {
    if (parts.empty()) {
        return {};
    }
    std::string names;
    for (const std::string& part : parts) {
        names += (names.empty() ? "" : ", ") + part;
    }
    const std::string found = names + ": from the dev kit, fine for trying things out; players "
                                      "need the real ones";
    return {ok("simulated", found, found)};
}

} // namespace

int runDoctor(const DoctorOptions& options, std::FILE* output) {
    const fs::path folder = folderOf(options);
    const ConfigText config = readConfig(folder);
    const std::string url = config.settings.value("VESK_URL");
    const BackendAddress address(url);
    const PemFile trusted(devkit::readFile(folder / kTrustFile));
    std::vector<std::string> simulated = simulatedComponents(folder);

    Report report(output, options.json);
    report.add("library", checkLibrary(folder));
    Findings files = checkFolder(folder);
    append(files, config.findings);
    append(files, checkMessages(folder));
    append(files, checkTrust(folder, trusted, std::time(nullptr), address.isSecure()));
    report.add("files", files);
    if (config.readable) {
        report.add("settings", checkSettings(config.settings));
    }
    report.add("channels",
               checkComponents(folder, config.readable ? &config.settings : nullptr, kSystem));
    if (address.isValid() && !options.offline) {
        const Connection connection = tryConnection(url, folder / kTrustFile);
        report.add("backend", checkConnection(address, connection, trusted));
        if (connection.simulated) {
            simulated.emplace_back("the backend");
        }
    }
    report.add("simulated", describeSimulated(simulated));
    return report.finish();
}

} // namespace vesk::doctor
