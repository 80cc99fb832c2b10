#ifndef VESK_DEVKIT_DOCTOR_FILECHECK_H
#define VESK_DEVKIT_DOCTOR_FILECHECK_H

#include <cstdint>
#include <filesystem>
#include <string>

#include "finding.h"
#include "pem.h"

namespace vesk::doctor {

/// The file's bytes; empty when it is missing or cannot be read.
std::string fileBytes(const std::filesystem::path& file);

/// The texts of the return codes.
Findings checkMessages(const std::filesystem::path& folder);

/// The certificates that the SDK trusts.
/// @param now Unix seconds.
/// @param needed whether the backend's address is one of https.
Findings checkTrust(const std::filesystem::path& folder, const Pem& pem, int64_t now, bool needed);

/// What the SDK writes: whether it can, how large the log is, whether a login is remembered.
Findings checkFolder(const std::filesystem::path& folder);

} // namespace vesk::doctor

#endif
