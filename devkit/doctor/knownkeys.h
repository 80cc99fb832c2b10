#ifndef VESK_DEVKIT_DOCTOR_KNOWNKEYS_H
#define VESK_DEVKIT_DOCTOR_KNOWNKEYS_H

#include <string>
#include <vector>

#include "report.h"

namespace vesk::doctor {

enum class KeyType { Address, Text, Secret, Seconds, AppNumber, Switch, LogSwitch };

/// A key of VESKConfig.ini.
struct KnownKey {
    const char* name;
    KeyType type;
    const char* fallback; ///< what holds without it; null when nothing works without it
};

/// Every key of docs/configuration.md.
const std::vector<KnownKey>& knownKeys();

bool isKnownKey(const std::string& name);

/// The key that was probably meant by @p name, which is none; empty when nothing is like it.
std::string likelyKey(const std::string& name);

/// Whether @p value, which is set, is well-formed and what the SDK makes of it. A secret is told by
/// its length.
Finding checkValue(const KnownKey& key, const std::string& value);

} // namespace vesk::doctor

#endif
