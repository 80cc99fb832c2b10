#ifndef VESK_CONFIG_VESKCONFIGMANAGER_H
#define VESK_CONFIG_VESKCONFIGMANAGER_H

#include <map>
#include <string>

#include "module/vesksingleton.h"

namespace Braxel {
namespace VESK {

/// Typed settings. A lookup asks the game-set cache, then the remote one, then the default one,
/// which holds VESKConfig.ini; an empty value counts as missing and moves on to the next.
///
/// The caches are filled as a whole and never change after that, so lookups take no lock. While
/// VESKConfig.ini is missing every lookup tries the file again.
class VESKConfigManager {
public:
    using Cache = std::map<std::string, std::string>;

    static VESKConfigManager* GetInstance() {
        return VESKSingleton<VESKConfigManager>::GetInstance();
    }

    /// Reads VESKConfig.ini unless that has been done.
    void InitConfigFromINI();

    /// Fills @p cache from the local file of the storage key @p name, where there is such a place.
    void GetLocalConfig(const std::string& name, Cache& cache);

    /// Looks one key up in one cache.
    std::string GetValue(const std::string& key, const std::string& defValue, const Cache& cache);

    /// Looks one key up in VESKConfig.ini alone, reading that first if need be.
    std::string GetDefaultValue(const std::string& key);

    /// Get<const char*>(key): a text, "" when it is set nowhere.
    template <typename T>
    std::string Get(const std::string& key);

    /// Get<bool> and Get<int>: for bool only "1" is true; a text that is no number is the int 0.
    template <typename T>
    T Get(const std::string& key, T defValue);

private:
    friend class VESKSingleton<VESKConfigManager>;
    VESKConfigManager() { InitConfigFromINI(); }

    std::string FirstNonEmpty(const std::string& key, const std::string& defValue);
};

template <>
std::string VESKConfigManager::Get<const char*>(const std::string& key);
template <>
bool VESKConfigManager::Get<bool>(const std::string& key, bool defValue);
template <>
int VESKConfigManager::Get<int>(const std::string& key, int defValue);

} // namespace VESK
} // namespace Braxel

#endif
