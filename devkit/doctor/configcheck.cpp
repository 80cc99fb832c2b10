#include <cctype>

#include "checks.h"
#include "common/file.h"
#include "knownkeys.h"

namespace vesk::doctor {

using devkit::IniFile;

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
    std::error_code ignored;
    const bool exists = std::filesystem::exists(folder / kConfigFile, ignored);
    std::string bytes = devkit::readFile(folder / kConfigFile);
    if (bytes.empty()) {
        return {{problem(kConfigFile, exists ? "is empty" : "there is no such file",
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
        findings.push_back(warning(kConfigFile,
                                   lineNumber(line) + " is passed over: it has no \"=\"",
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
