#include "knownkeys.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace vesk::doctor {

namespace {

/// Lower-case letters and digits only: nobody remembers dashes and capitals.
std::string skeleton(const std::string& name) {
    std::string letters;
    for (const char c : name) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
            letters += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
    }
    return letters;
}

/// How many letters have to be put in, left out or changed to get from one to the other.
size_t distance(const std::string& from, const std::string& to) {
    std::vector<size_t> row(to.size() + 1);
    for (size_t j = 0; j < row.size(); ++j) {
        row[j] = j;
    }
    for (size_t i = 1; i <= from.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t j = 1; j <= to.size(); ++j) {
            const size_t changed = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, changed});
        }
    }
    return row.back();
}

} // namespace

const std::vector<KnownKey>& knownKeys() {
    static const std::vector<KnownKey> keys = {
        {"VESK_URL", KeyType::Address, nullptr},
        {"VESK_GAME_ID", KeyType::Text, nullptr},
        {"VESK_SDK_KEY", KeyType::Secret, nullptr},
        {"STEAM_APP_ID", KeyType::AppNumber, "Steam is not asked whether it must start the game"},
        {"KZ_APP_ID", KeyType::Text, "empty"},
        {"KZ_APP_KEY", KeyType::Secret, "empty"},
        {"FERNO_APP_ID", KeyType::Text, "empty"},
        {"VESK_HTTP_TIMEOUT", KeyType::Seconds, "15 seconds"},
        {"VESK_DEVICE_INFO", KeyType::Switch, "on"},
        {"VESK_CONFIG_LOG_ENABLE", KeyType::LogSwitch, "off"},
        {"VESK_JSON_LOG_ENABLE", KeyType::LogSwitch, "off"},
        {"VESK_HTTPDNS_ENABLE", KeyType::Switch, "on, without any effect"},
        {"VESK_DEBUG", KeyType::Switch, "nobody asks for it"},
    };
    return keys;
}

bool isKnownKey(const std::string& name) {
    const auto& keys = knownKeys();
    return std::any_of(keys.begin(), keys.end(),
                       [&](const KnownKey& key) { return name == key.name; });
}

std::string likelyKey(const std::string& name) {
    constexpr size_t kLongestKey = 40;
    constexpr size_t kStillAlike = 2;
    const std::string wanted = skeleton(name);
    size_t best = kStillAlike + 1;
    std::string likely;
    for (const KnownKey& key : knownKeys()) {
        const std::string known = skeleton(key.name);
        const size_t letters = wanted.size() > kLongestKey ? best : distance(wanted, known);
        // SDK_KEY and HTTP_TIMEOUT lack the beginning that all of them have.
        const bool tail = wanted.size() > 2 && known == "vesk" + wanted;
        if (tail || letters < best) {
            best = tail ? 0 : letters;
            likely = key.name;
        }
    }
    return likely;
}

} // namespace vesk::doctor
