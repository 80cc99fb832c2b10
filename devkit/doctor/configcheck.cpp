#include "configcheck.h"

#include <cctype>
#include <set>

#include "knownkeys.h"
#include "valuecheck.h"

namespace vesk::doctor {

namespace {

std::string lineNumber(size_t line) {
    return "line " + std::to_string(line);
}

/// Whether a name can be shown: a line that was mixed up may have a secret in the key's place.
bool looksLikeName(const std::string& key) {
    bool underscore = false;
    for (const char c : key) {
        underscore = underscore || c == '_';
        if (c != '_' && std::isupper(static_cast<unsigned char>(c)) == 0) {
            return false;
        }
    }
    return underscore;
}

Finding judgeUnknownKey(const IniFile& config, const IniFile::Setting& setting) {
    const std::string where = std::string(kConfigFile) + ", " + lineNumber(setting.line);
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
    const std::string where = std::string(kConfigFile) + ", " + lineNumber(setting.line);
    if (!isKnownKey(setting.key)) {
        return {judgeUnknownKey(config, setting)};
    }
    Findings findings;
    if (config.find(setting.key) != &setting) {
        findings.push_back(warning(where,
                                   setting.key + " is set once more; only " +
                                       lineNumber(config.find(setting.key)->line) + " counts",
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

Finding judgeMissing(const KnownKey& key) {
    if (key.fallback == nullptr) {
        return problem(key.name, "is not set",
                       std::string("Add a line \"") + key.name + " = ...\" to " + kConfigFile +
                           "; the operator of the login backend knows the value.");
    }
    return ok(key.name, std::string("is not set: ") + key.fallback);
}

} // namespace

Findings checkConfigFile(bool exists, const std::string& bytes, const IniFile& config) {
    if (!exists || bytes.empty()) {
        return {problem(kConfigFile, exists ? "is empty" : "there is no such file",
                        "Put VESKConfig.ini beside the library; a sample comes with the SDK.")};
    }
    Findings findings;
    if (bytes.find('\0') != std::string::npos) {
        return {problem(kConfigFile, "is no plain text, or was saved as UTF-16",
                        "Save it as UTF-8 without a byte order mark.")};
    }
    if (bytes.compare(0, 3, "\xEF\xBB\xBF") == 0) {
        findings.push_back(problem(kConfigFile, "begins with a byte order mark",
                                   "Save it as UTF-8 without one (\"UTF-8\", not \"UTF-8 with "
                                   "BOM\"): it becomes a part of the first key."));
    }
    for (const size_t line : config.strayLines()) {
        findings.push_back(warning(kConfigFile,
                                   lineNumber(line) + " is passed over: it has no \"=\"",
                                   "Write \"KEY = value\", or put a \"#\" in front."));
    }
    if (findings.empty()) {
        const size_t count = config.settings().size();
        findings.push_back(
            ok(kConfigFile, "read; lines that set something: " + std::to_string(count)));
    }
    return findings;
}

Findings checkConfigKeys(const IniFile& config) {
    Findings findings;
    for (const IniFile::Setting& setting : config.settings()) {
        const Findings more = judgeLine(config, setting);
        findings.insert(findings.end(), more.begin(), more.end());
    }
    for (const KnownKey& key : knownKeys()) {
        const IniFile::Setting* setting = config.find(key.name);
        // An empty number is 0, not the fallback; see the types in docs/configuration.md.
        const bool missing =
            setting == nullptr || (setting->value.empty() && key.type != KeyType::Seconds);
        findings.push_back(missing ? judgeMissing(key) : checkValue(key, setting->value));
    }
    return findings;
}

} // namespace vesk::doctor
