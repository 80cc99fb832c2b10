#ifndef VESK_DEVKIT_DOCTOR_LIBRARYCHECK_H
#define VESK_DEVKIT_DOCTOR_LIBRARYCHECK_H

#include <filesystem>

#include "finding.h"

namespace vesk::doctor {

/// The SDK's library: whether it can be loaded, which version it is and, when this program uses it
/// already, whether it is the one that lies beside the program.
Findings checkLibrary(const std::filesystem::path& folder);

} // namespace vesk::doctor

#endif
