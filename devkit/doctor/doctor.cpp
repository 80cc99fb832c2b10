#include "doctor.h"

#include <ctime>

#include "common/file.h"
#include "common/ownmodule.h"
#include "module.h"

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
Findings describeSimulated(const std::string& parts) {
    if (parts.empty()) {
        return {};
    }
    const std::string found =
        parts + ": from the dev kit, fine for trying things out; players need the real ones";
    return {ok("simulated", found, found)};
}

} // namespace

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
