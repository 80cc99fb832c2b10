#include <algorithm>
#include <string_view>

#include "common/system.h"
#include "doctor.h"
#include "module.h"

namespace fs = std::filesystem;

namespace vesk::doctor {

namespace {

using namespace std::string_view_literals;

constexpr const char* kCheck = "library";
constexpr size_t kLongestWindowsPath = 259;

bool holdsAt(std::string_view bytes, size_t place, std::string_view wanted) {
    return place <= bytes.size() && bytes.substr(place, wanted.size()) == wanted;
}

/// Where a Windows file has its header, behind the one of DOS.
size_t headerOf(std::string_view bytes) {
    size_t place = 0;
    for (size_t i = 0x40; i > 0x3C && i <= bytes.size(); --i) {
        place = place << 8 | static_cast<unsigned char>(bytes[i - 1]);
    }
    return place;
}

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

ModuleKind kindOf(const std::string& bytes) {
    if (holdsAt(bytes, 0, "\x7F\x45LF\x02"sv) && holdsAt(bytes, 0x12, "\x3E\0"sv)) {
        return ModuleKind::Linux64;
    }
    const size_t header = headerOf(bytes);
    if (!holdsAt(bytes, 0, "MZ"sv) || !holdsAt(bytes, header, "PE\0\0"sv)) {
        return ModuleKind::None;
    }
    return holdsAt(bytes, header + 4, "\x64\x86"sv) ? ModuleKind::Windows64 : ModuleKind::Windows32;
}

std::string kindText(ModuleKind kind) {
    switch (kind) {
    case ModuleKind::Windows64:
        return "a library for 64-bit Windows";
    case ModuleKind::Windows32:
        return "a library for 32-bit Windows";
    case ModuleKind::Linux64:
        return "a library for 64-bit Linux";
    case ModuleKind::None:
        break;
    }
    return "no library";
}

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
