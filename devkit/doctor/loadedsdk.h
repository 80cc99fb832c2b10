#ifndef VESK_DEVKIT_DOCTOR_LOADEDSDK_H
#define VESK_DEVKIT_DOCTOR_LOADEDSDK_H

#include <filesystem>
#include <string>

#include "binaryfile.h"

namespace vesk::doctor {

/// The file name of the SDK's library, and the kind of file that can be loaded here.
extern const char* const kSdkLibrary;
extern const BinaryFile::Kind kSystem;

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
