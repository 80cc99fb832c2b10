#ifndef VESK_FOUNDATION_INI_INIPARSER_H
#define VESK_FOUNDATION_INI_INIPARSER_H

#include <map>
#include <string>

#include "module/vesksingleton.h"

namespace Braxel {
namespace VESK {

/// Reads "KEY = value # comment" lines; the rules are in docs/configuration.md.
class INIParser {
public:
    static INIParser* GetInstance() { return VESKSingleton<INIParser>::GetInstance(); }

    /// Adds the pairs of @p content to @p cache. A key that is there already keeps its value.
    /// @return false when there is nothing to parse.
    bool ParseINI(const std::string& content, std::map<std::string, std::string>& cache) const;

private:
    friend class VESKSingleton<INIParser>;
    INIParser() = default;
};

} // namespace VESK
} // namespace Braxel

#endif
