#ifndef VESK_DEVKIT_DOCTOR_VALUECHECK_H
#define VESK_DEVKIT_DOCTOR_VALUECHECK_H

#include <string>

#include "finding.h"
#include "knownkeys.h"

namespace vesk::doctor {

/// Whether @p value, which is set, is well-formed and what the SDK makes of it. A secret is told by
/// its length.
Finding checkValue(const KnownKey& key, const std::string& value);

} // namespace vesk::doctor

#endif
