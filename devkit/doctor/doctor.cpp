#include "doctor.h"

#include <chrono>

#include "backendaddress.h"
#include "componentcheck.h"
#include "configcheck.h"
#include "connectioncheck.h"
#include "filecheck.h"
#include "librarycheck.h"
#include "loadedsdk.h"
#include "proxysettings.h"
#include "report.h"

namespace fs = std::filesystem;

namespace vesk::doctor {

namespace {

fs::path folderOf(const DoctorOptions& options) {
    if (!options.folder.empty()) {
        return fs::absolute(options.folder);
    }
    const fs::path loaded = loadedSdk().path;
    return loaded.empty() ? programFolder() : loaded.parent_path();
}

int64_t now() {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace

int runDoctor(const DoctorOptions& options, std::FILE* output) {
    const fs::path folder = folderOf(options);
    const std::string bytes = fileBytes(folder / kConfigFile);
    const IniFile config(bytes);
    const std::string url = config.value("VESK_URL");
    const BackendAddress address(url);
    const Pem trusted = readPem(fileBytes(folder / "cacert.pem"));
    std::error_code ignored;

    Report report(output, options.json);
    report.print(checkLibrary(folder));
    report.print(checkFolder(folder));
    report.print(checkConfigFile(fs::exists(folder / kConfigFile, ignored), bytes, config));
    if (!bytes.empty()) {
        report.print(checkConfigKeys(config));
    }
    report.print(checkMessages(folder));
    report.print(checkTrust(folder, trusted, now(), address.isSecure()));
    report.print(checkComponents(folder, config, kSystem));
    if (address.isValid() && !options.offline) {
        report.print(checkProxy(address));
        report.print(checkConnection(address, tryConnection(url, folder / "cacert.pem"), trusted));
    }
    return report.finish();
}

} // namespace vesk::doctor
