#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "common/system.h"
#include "doctor.h"

namespace vesk::doctor {

using devkit::IniFile;

namespace {

/// A key of VESKConfig.ini.
struct SettingKey {
    std::string name;
    /// Whether a value that is set is well-formed, and what the SDK makes of it. A secret is told
    /// by its length.
    Finding (*check)(const std::string& name, const std::string& value);
    const char* fallback;      ///< what holds without it; null when nothing works without it
    bool emptyIsValue = false; ///< an empty value counts, and is not the fallback
};

constexpr const char* kDigits = "0123456789";

Finding good(const std::string& name, const std::string& found) {
    return ok(name, found, name + " " + found);
}

Finding checkAddress(const std::string& name, const std::string& value) {
    const BackendAddress address(value);
    if (!address.isValid) {
        return problem(name, address.shown + " is no address of a backend",
                       "Write scheme, host and, where it is not the usual one, port: "
                       "https://login.example.com");
    }
    if (value.back() == '/') {
        return problem(name, address.shown + " ends with a slash",
                       "Remove the slash: requests would go to \"//v2/...\".");
    }
    if (address.hasPath) {
        return warning(name, address.shown + " has a path",
                       "Leave it out, unless the backend really serves it: \"/v2/auth/...\" is "
                       "appended.");
    }
    if (!address.isSecure() && !address.isLocal()) {
        return warning(name, address.shown + " is not encrypted",
                       "Use https:// for everything but development: the player's credential "
                       "goes in clear text.");
    }
    return good(name, address.shown);
}

Finding checkText(const std::string& name, const std::string& value) {
    const std::string plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.";
    if (value.find_first_not_of(plain) != std::string::npos) {
        return warning(name, "\"" + value + "\" holds unusual characters",
                       "Compare it with what the other side has given you.");
    }
    return good(name, value);
}

Finding checkSecret(const std::string& name, const std::string& value) {
    return ok(name, "is set, characters: " + std::to_string(value.size()), name);
}

Finding checkSeconds(const std::string& name, const std::string& value) {
    const long long seconds = std::strtoll(value.c_str(), nullptr, 10);
    const std::string found = std::to_string(seconds) + " seconds";
    if (seconds <= 0) {
        return problem(name, "counts as " + found,
                       "Write a number of seconds, or remove the line to get 15: now every "
                       "request that waits is over at once.");
    }
    if (value.find_first_not_of(kDigits) != std::string::npos || value.size() > 6) {
        return warning(name, "\"" + value + "\" counts as " + found,
                       "Write nothing but the number of seconds.");
    }
    return good(name, found);
}

Finding checkAppNumber(const std::string& name, const std::string& value) {
    if (value.find_first_not_of(kDigits) != std::string::npos) {
        return problem(name, "\"" + value + "\" is no number",
                       "Write the game's number in Steam, digits only.");
    }
    return good(name, value);
}

Finding checkSwitch(const std::string& name, const std::string& value) {
    const std::string number = value.substr(std::min(value.find_first_not_of('0'), value.size()));
    if (number.empty() || number == "1") {
        return good(name, number.empty() ? "off" : "on");
    }
    return warning(name, "\"" + value + "\" counts as off",
                   "Write 1 for on or 0 for off: nothing else is understood.");
}

Finding checkLogSwitch(const std::string& name, const std::string& value) {
    const Finding finding = checkSwitch(name, value);
    return finding.found != "on" ? finding
                                 : warning(name, "on: the log grows faster and shows more",
                                           "Write 0 in what players get.");
}

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

/// Every key of docs/configuration.md.
const std::vector<SettingKey>& settingKeys() {
    static const std::vector<SettingKey> keys = {
        {"VESK_URL", checkAddress, nullptr},
        {"VESK_GAME_ID", checkText, nullptr},
        {"VESK_SDK_KEY", checkSecret, nullptr},
        {"STEAM_APP_ID", checkAppNumber, "Steam is not asked whether it must start the game"},
        {"KZ_APP_ID", checkText, "empty"},
        {"KZ_APP_KEY", checkSecret, "empty"},
        {"FERNO_APP_ID", checkText, "empty"},
        {"VESK_HTTP_TIMEOUT", checkSeconds, "15 seconds", true},
        {"VESK_DEVICE_INFO", checkSwitch, "on"},
        {"VESK_CONFIG_LOG_ENABLE", checkLogSwitch, "off"},
        {"VESK_JSON_LOG_ENABLE", checkLogSwitch, "off"},
        {"VESK_HTTPDNS_ENABLE", checkSwitch, "on, without any effect"},
        {"VESK_DEBUG", checkSwitch, "nobody asks for it"},
    };
    return keys;
}

/// The key that was probably meant by @p name, which is none; empty when nothing is like it.
std::string likelyKey(const std::string& name) {
    constexpr size_t kLongestKey = 40;
    constexpr size_t kStillAlike = 2;
    const std::string wanted = skeleton(name.substr(0, kLongestKey));
    size_t best = kStillAlike + 1;
    std::string likely;
    for (const SettingKey& key : settingKeys()) {
        const std::string known = skeleton(key.name);
        // SDK_KEY and HTTP_TIMEOUT lack the beginning that all of them have.
        const bool tail = wanted.size() > 2 && known == "vesk" + wanted;
        const size_t letters = tail ? 0 : distance(wanted, known);
        if (letters < best) {
            best = letters;
            likely = key.name;
        }
    }
    return likely;
}

std::string lineNumber(const IniFile::Setting& setting) {
    return "line " + std::to_string(setting.line);
}

/// Whether a name can be shown: a line that was mixed up may have a secret in the key's place.
bool looksLikeName(const std::string& key) {
    return key.find('_') != std::string::npos &&
           key.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_") == std::string::npos;
}

Finding judgeUnknownKey(const IniFile& config, const IniFile::Setting& setting,
                        const std::string& where) {
    const std::string likely = likelyKey(setting.key);
    if (likely.empty()) {
        const std::string name = looksLikeName(setting.key) ? setting.key : "a key";
        return warning(where, name + " is no setting of the SDK and has no effect",
                       "Remove the line, or look the name up in docs/configuration.md.");
    }
    const std::string found =
        setting.key + " is no setting of the SDK; probably " + likely + " is meant";
    if (config.find(likely) == nullptr) {
        return problem(where, found, "Write " + likely + ", exactly so, in that line.");
    }
    return warning(where, found + ", which another line sets",
                   "Remove the line: it has no effect.");
}

Findings judgeLine(const IniFile& config, const IniFile::Setting& setting) {
    const std::string where = std::string(kConfigFile) + ", " + lineNumber(setting);
    const auto isIt = [&](const SettingKey& key) { return setting.key == key.name; };
    if (std::none_of(settingKeys().begin(), settingKeys().end(), isIt)) {
        return {judgeUnknownKey(config, setting, where)};
    }
    Findings findings;
    if (config.find(setting.key) != &setting) {
        findings.push_back(warning(where,
                                   setting.key + " is set once more; only " +
                                       lineNumber(*config.find(setting.key)) + " counts",
                                   "Remove one of the two lines."));
    }
    if (setting.cut) {
        findings.push_back(warning(where, "the value of " + setting.key + " ends at a \"#\"",
                                   "A \"#\" begins a comment, also inside a value. Put a blank "
                                   "before a comment; a value with a \"#\" cannot be written."));
    }
    if (setting.value.size() > 1 && setting.value.front() == '"' && setting.value.back() == '"') {
        findings.push_back(warning(where, "the value of " + setting.key + " is in quotes",
                                   "Remove the quotes: they count as a part of the value."));
    }
    return findings;
}

Finding judgeKey(const IniFile& config, const SettingKey& key) {
    const IniFile::Setting* const setting = config.find(key.name);
    if (setting != nullptr && (key.emptyIsValue || !setting->value.empty())) {
        return key.check(key.name, setting->value);
    }
    if (key.fallback != nullptr) {
        return ok(key.name, std::string("is not set: ") + key.fallback);
    }
    return problem(key.name, "is not set",
                   "Add a line \"" + key.name +
                       " = ...\" to VESKConfig.ini; the operator of the login backend knows the "
                       "value.");
}

/// The encoding of a file that the SDK reads nothing of; empty when it reads it.
std::string unreadableEncoding(const std::string& bytes) {
    if (bytes.compare(0, 2, "\xFF\xFE") == 0) {
        return "UTF-16 (Notepad: \"UTF-16 LE\" or \"Unicode\")";
    }
    if (bytes.compare(0, 2, "\xFE\xFF") == 0) {
        return "UTF-16 (Notepad: \"UTF-16 BE\")";
    }
    return bytes.find('\0') == std::string::npos ? "" : "UTF-16, or is no plain text";
}

} // namespace

ConfigText readConfig(const std::filesystem::path& folder) {
    std::string bytes = devkit::readFile(folder / kConfigFile);
    if (bytes.empty()) {
        return {{problem(kConfigFile,
                         isThere(folder / kConfigFile) ? "is empty" : "there is no such file",
                         "Put VESKConfig.ini beside the library; a sample comes with the SDK.")}};
    }
    const std::string encoding = unreadableEncoding(bytes);
    if (!encoding.empty()) {
        return {
            {problem(kConfigFile, "is saved as " + encoding + ": the SDK reads no setting of it",
                     "Save it as ANSI or UTF-8. In Notepad: File, Save as, Encoding \"ANSI\" "
                     "or \"UTF-8\", not \"UTF-8 with BOM\".")}};
    }
    Findings findings;
    const std::string mark = "\xEF\xBB\xBF";
    if (bytes.compare(0, mark.size(), mark) == 0) {
        bytes.erase(0, mark.size()); // one finding is enough for it
        findings.push_back(problem(kConfigFile, "begins with a byte order mark",
                                   "Save it as UTF-8 without one (\"UTF-8\", not \"UTF-8 with "
                                   "BOM\"): it becomes a part of the first line."));
    }
    IniFile settings(bytes);
    for (const size_t line : settings.strayLines()) {
        findings.push_back(warning(
            kConfigFile, "line " + std::to_string(line) + " is passed over: it has no \"=\"",
            "Write \"KEY = value\", or put a \"#\" in front."));
    }
    if (findings.empty()) {
        const std::string count = std::to_string(settings.settings().size());
        findings.push_back(
            ok(kConfigFile, "read; lines that set something: " + count, kConfigFile));
    }
    return {findings, true, settings};
}

Findings checkSettings(const IniFile& config) {
    Findings findings;
    for (const IniFile::Setting& setting : config.settings()) {
        append(findings, judgeLine(config, setting));
    }
    for (const SettingKey& key : settingKeys()) {
        findings.push_back(judgeKey(config, key));
    }
    return findings;
}

} // namespace vesk::doctor
