#ifndef VESK_DEVKIT_DOCTOR_MODULE_H
#define VESK_DEVKIT_DOCTOR_MODULE_H

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vesk::doctor {

enum class ModuleKind { None, Windows64, Windows32, Linux64 };

/// The file name of the SDK's library, and the kind of file that can be loaded here.
extern const char* const kSdkLibrary;
extern const ModuleKind kSystem;

/// What a file is, by its head.
ModuleKind kindOf(const std::string& bytes);

/// "a library for 64-bit Windows" and so on.
std::string kindText(ModuleKind kind);

/// Which of the names a library of this system does not export; nothing when it is damaged or cut
/// off. Nothing of it runs.
std::optional<std::vector<std::string>> missingExports(const std::filesystem::path& file,
                                                       const std::vector<std::string>& names);

/// The SDK's library as it is loaded in this process.
struct LoadedSdk {
    std::filesystem::path path; ///< empty when it is not loaded
    std::string version;        ///< what it says itself; empty when it cannot tell
    std::string error;          ///< why it could not be loaded
};

/// The library that this process uses already.
LoadedSdk loadedSdk();

/// Loads the library. Only this one: it is the SDK itself, and its version is asked for.
LoadedSdk loadSdk(const std::filesystem::path& file);

} // namespace vesk::doctor

#endif
