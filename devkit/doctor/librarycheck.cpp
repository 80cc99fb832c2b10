#include <algorithm>

#include "common/file.h"
#include "common/ownmodule.h"
#include "doctor.h"
#include "module.h"

namespace fs = std::filesystem;

namespace vesk::doctor {

namespace {

constexpr const char* kCheck = "library";
constexpr size_t kLongestWindowsPath = 259;

Finding describe(const LoadedSdk& sdk) {
    if (sdk.version.empty()) {
        return warning(kCheck, sdk.path.u8string() + " does not tell its version",
                       "Take a newer version of the SDK.");
    }
    const std::string found = sdk.path.u8string() + ", version " + sdk.version;
    return ok(kCheck, found, found);
}

Finding checkLoaded(const LoadedSdk& sdk) {
    const fs::path folder = devkit::ownFolder();
    std::error_code ignored;
    if (!fs::equivalent(sdk.path.parent_path(), folder, ignored)) {
        return warning(kCheck,
                       sdk.path.u8string() + ", version " + sdk.version +
                           ", does not lie beside the program in " + folder.u8string(),
                       "Nothing, if that is wanted: the SDK uses the files of its own folder, not "
                       "of the program's. Otherwise copy the library beside the program.");
    }
    return describe(sdk);
}

Finding checkFile(const fs::path& file) {
    const std::string name = file.filename().u8string();
    const std::string remedy = "Copy " + name + " there from the SDK.";
    if (!isThere(file)) {
        return problem(kCheck, "there is no " + name, remedy);
    }
    const ModuleKind kind = kindOf(devkit::readFile(file));
    if (kind != kSystem) {
        return problem(kCheck, name + " is " + kindText(kind), remedy);
    }
    // Loading it would end this program: what is missing is mapped all the same.
    if (!missingExports(file, {})) {
        return problem(kCheck, name + " is damaged or cut off", remedy);
    }
    const LoadedSdk sdk = loadSdk(file);
    if (sdk.path.empty()) {
        return problem(kCheck, name + " cannot be loaded: " + sdk.error,
                       "Something that it needs is missing, or it is not the SDK's. " + remedy);
    }
    return describe(sdk);
}

} // namespace

Findings checkLibrary(const fs::path& folder) {
    const LoadedSdk loaded = loadedSdk();
    Findings findings = {loaded.path.empty() ? checkFile(folder / kSdkLibrary)
                                             : checkLoaded(loaded)};
    const std::string path = folder.u8string();
    const bool ascii = std::all_of(path.begin(), path.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    const bool tooLong = path.size() + sizeof "VESKRetMsg_.json" > kLongestWindowsPath;
    if (kSystem == ModuleKind::Windows64 && (!ascii || tooLong)) {
        findings.push_back(problem(
            kCheck, path + (ascii ? " is too long a path" : " has characters other than ASCII"),
            "Install the game elsewhere: the SDK does not find its files."));
    }
    return findings;
}

} // namespace vesk::doctor
