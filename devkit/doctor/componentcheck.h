#ifndef VESK_DEVKIT_DOCTOR_COMPONENTCHECK_H
#define VESK_DEVKIT_DOCTOR_COMPONENTCHECK_H

#include <filesystem>

#include "binaryfile.h"
#include "finding.h"
#include "inifile.h"

namespace vesk::doctor {

/// The channels: whether each one's component lies in the folder, is one for @p system, has the
/// entry points that the SDK asks for, and has its settings.
Findings checkComponents(const std::filesystem::path& folder, const IniFile& config,
                         BinaryFile::Kind system);

} // namespace vesk::doctor

#endif
