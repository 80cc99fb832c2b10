#ifndef VESK_DEVKIT_DOCTOR_CONFIGCHECK_H
#define VESK_DEVKIT_DOCTOR_CONFIGCHECK_H

#include <string>

#include "finding.h"
#include "inifile.h"

namespace vesk::doctor {

constexpr const char* kConfigFile = "VESKConfig.ini";

/// The file as a whole: there at all, its encoding, its lines.
/// @param bytes what stands in it; @p exists says whether there is one.
Findings checkConfigFile(bool exists, const std::string& bytes, const IniFile& config);

/// Each key of docs/configuration.md, and keys that are none. No secret gets into a finding.
Findings checkConfigKeys(const IniFile& config);

} // namespace vesk::doctor

#endif
