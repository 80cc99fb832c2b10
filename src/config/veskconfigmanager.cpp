#include "config/veskconfigmanager.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <mutex>
#include <string_view>

#include "foundation/ini/iniparser.h"
#include "foundation/log/vesklogger.h"
#include "module/veskmutex.h"
#include "module/vesksingleton.h"
#include "platformimpl/foundation/file/veskfileutils.h"
#include "platformimpl/foundation/file/vesklocalstorage.h"

namespace Braxel {
namespace VESK {

namespace {

struct Caches {
    VESKConfigManager::Cache mDefaultConfigCache;
    VESKConfigManager::Cache mRemoteConfigCache;
    VESKConfigManager::Cache mGameSetConfigCache;
};

std::atomic<const Caches*> gCaches{nullptr};
std::atomic<bool> gConfigLogEnable{false};
VESKMutex gInitMutex;

bool IsInitialised() {
    return gCaches.load(std::memory_order_acquire) != nullptr;
}

const Caches& CurrentCaches() {
    const Caches* caches = gCaches.load(std::memory_order_acquire);
    return caches == nullptr ? *VESKSingleton<Caches>::GetInstance() : *caches;
}

// As a stream would read it, without the process-wide locale that a stream sets up.
int ToNumber(const std::string& text) {
    const long long value = std::strtoll(text.c_str(), nullptr, 10);
    constexpr long long kLowest = std::numeric_limits<int>::min();
    constexpr long long kHighest = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(std::max(value, kLowest), kHighest));
}

bool ToBool(const std::string& text) {
    return ToNumber(text) == 1;
}

void AppendJsonString(std::string& json, const std::string& text) {
    constexpr std::string_view kNamed = "\"\\\b\f\n\r\t";
    constexpr std::string_view kNames = "\"\\bfnrt";
    json += '"';
    for (const char c : text) {
        const size_t named = kNamed.find(c);
        if (named != std::string_view::npos) {
            json.append(1, '\\').append(1, kNames[named]);
        } else if (static_cast<unsigned char>(c) < 0x20) {
            char escape[16] = {};
            std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(c));
            json += escape;
        } else {
            json += c;
        }
    }
    json += '"';
}

// Not through the JSON writer, which lies above: its log switch is itself a configuration value.
std::string RenderAsJson(const VESKConfigManager::Cache& cache) {
    std::string json;
    for (const auto& [key, value] : cache) {
        json += json.empty() ? '{' : ',';
        AppendJsonString(json, key);
        json += ':';
        AppendJsonString(json, value);
    }
    return json.empty() ? "{}" : json + '}';
}

bool FindLogSwitch(const Caches& caches) {
    bool enable = false;
    for (const auto* cache : {&caches.mDefaultConfigCache, &caches.mRemoteConfigCache}) {
        const auto found = cache->find("VESK_CONFIG_LOG_ENABLE");
        if (found != cache->end()) {
            enable = ToBool(found->second);
        }
    }
    return enable;
}

void LogCaches(const Caches& caches) {
    VESK_LOG_DEBUG("VESKConfigManager::InitConfigFromINI", "mDefaultConfigCache : %s \n",
                   RenderAsJson(caches.mDefaultConfigCache).c_str());
    VESK_LOG_DEBUG("VESKConfigManager::InitConfigFromINI", "mRemoteConfigCache : %s \n",
                   RenderAsJson(caches.mRemoteConfigCache).c_str());
    // Deliberate: no line end on the last one.
    VESK_LOG_DEBUG("VESKConfigManager::InitConfigFromINI", "mGameSetConfigCache : %s ",
                   RenderAsJson(caches.mGameSetConfigCache).c_str());
}

} // namespace

void VESKConfigManager::InitConfigFromINI() {
    const std::lock_guard<VESKMutex> lock(gInitMutex);
    if (IsInitialised()) {
        // Deliberate: only repeated calls say so.
        VESK_LOG_DEBUG("VESKConfigManager::InitConfigFromINI",
                       "config module : read from ini file success");
        return;
    }
    const std::string content = VESKFileUtils::GetInstance()->ReadConfigFile("VESKConfig.ini");
    auto caches = std::make_unique<Caches>();
    if (content.empty()) {
        VESK_LOG_ERROR("VESKConfigManager::InitConfigFromINI",
                       "read from assets file of VESKConfig.ini is empty");
    } else {
        INIParser::GetInstance()->ParseINI(content, caches->mDefaultConfigCache);
        GetLocalConfig("upra_remote_config", caches->mRemoteConfigCache);
        GetLocalConfig("upra_game_set_config", caches->mGameSetConfigCache);
    }
    gConfigLogEnable = FindLogSwitch(*caches);
    if (gConfigLogEnable) {
        LogCaches(*caches);
    }
    if (!content.empty()) {
        gCaches.store(caches.get(), std::memory_order_release);
        VESKSingleton<std::unique_ptr<Caches>>::GetInstance()->swap(caches);
    }
}

void VESKConfigManager::GetLocalConfig(const std::string& name, Cache& cache) {
    const std::string fileName = name + ".tmp";
    const std::string path = VESKLocalStorage::ConfigPath();
    const bool isLocalConfigMiss = path.empty();
    if (gConfigLogEnable) {
        VESK_LOG_DEBUG("VESKConfigManager::GetLocalConfig",
                       "localConfFilePath : %s , isLocalConfigMiss : %d", path.c_str(),
                       isLocalConfigMiss ? 1 : 0);
    }
    if (!isLocalConfigMiss) {
        INIParser::GetInstance()->ParseINI(VESKFileUtils::GetInstance()->ReadFile(fileName), cache);
    }
}

std::string VESKConfigManager::GetValue(const std::string& key, const std::string& defValue,
                                        const Cache& cache) {
    const auto found = cache.find(key);
    if (found == cache.end()) {
        if (gConfigLogEnable) {
            VESK_LOG_DEBUG("VESKConfigManager::GetValue",
                           "can not find key : %s in the config cache", key.c_str());
        }
        return defValue;
    }
    if (gConfigLogEnable) {
        VESK_LOG_DEBUG("VESKConfigManager::GetValue", "local cache config key = %s , value = %s ",
                       key.c_str(), found->second.c_str());
    }
    return found->second;
}

std::string VESKConfigManager::GetDefaultValue(const std::string& key) {
    if (!IsInitialised()) {
        InitConfigFromINI();
    }
    return GetValue(key, "", CurrentCaches().mDefaultConfigCache);
}

std::string VESKConfigManager::FirstNonEmpty(const std::string& key, const std::string& defValue) {
    const Caches& caches = CurrentCaches();
    std::string value = GetValue(key, "", caches.mGameSetConfigCache);
    if (value.empty()) {
        value = GetValue(key, "", caches.mRemoteConfigCache);
    }
    if (value.empty()) {
        value = GetValue(key, defValue, caches.mDefaultConfigCache);
    }
    return value;
}

template <>
std::string VESKConfigManager::Get<const char*>(const std::string& key) {
    if (!IsInitialised()) {
        InitConfigFromINI();
    }
    if (gConfigLogEnable) {
        VESK_LOG_DEBUG("VESKConfigManager::Get",
                       "type (const char*) match with key : %s, defValue : %s ", key.c_str(), "");
    }
    const Caches& caches = CurrentCaches();
    std::string value = GetValue(key, "", caches.mGameSetConfigCache);
    VESK_LOG_DEBUG("VESKConfigManager::Get", "config from game, key:%s value:%s", key.c_str(),
                   value.c_str());
    if (!value.empty()) {
        return value;
    }
    value = GetValue(key, "", caches.mRemoteConfigCache);
    VESK_LOG_DEBUG("VESKConfigManager::Get", "config from remote, key:%s value:%s", key.c_str(),
                   value.c_str());
    if (!value.empty()) {
        return value;
    }
    value = GetValue(key, "", caches.mDefaultConfigCache);
    VESK_LOG_DEBUG("VESKConfigManager::Get", "config from default, key:%s value:%s", key.c_str(),
                   value.c_str());
    return value;
}

template <>
bool VESKConfigManager::Get<bool>(const std::string& key, bool defValue) {
    if (!IsInitialised()) {
        InitConfigFromINI();
    }
    const char* const defText = defValue ? "1" : "0";
    if (gConfigLogEnable) {
        VESK_LOG_DEBUG("VESKConfigManager::Get", "type (bool) match with key : %s, defValue : %s ",
                       key.c_str(), defText);
    }
    if (key == "VESK_DEBUG") {
        const std::string remote = GetValue(key, "", CurrentCaches().mRemoteConfigCache);
        if (!remote.empty()) {
            VESK_LOG_ERROR("VESKConfigManager::Get", "LABEL_VESK_DEBUG config: %s", remote.c_str());
            return ToBool(remote);
        }
    }
    const std::string text = FirstNonEmpty(key, defText);
    const bool value = text.empty() ? defValue : ToBool(text);
    VESK_LOG_DEBUG("VESKConfigManager::Get", "config key: %s, value: %s", key.c_str(),
                   value ? "true" : "false");
    return value;
}

template <>
int VESKConfigManager::Get<int>(const std::string& key, int defValue) {
    if (!IsInitialised()) {
        InitConfigFromINI();
    }
    if (gConfigLogEnable) {
        VESK_LOG_DEBUG("VESKConfigManager::Get", "type (int) match with key : %s, defValue : %d ",
                       key.c_str(), defValue);
    }
    return ToNumber(FirstNonEmpty(key, std::to_string(defValue)));
}

} // namespace VESK
} // namespace Braxel
