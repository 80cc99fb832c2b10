#include "inifile.h"

#include <algorithm>

namespace vesk::doctor {

namespace {

constexpr const char* kBlanks = " \t";

std::string trimmed(const std::string& text) {
    const size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string::npos
               ? std::string()
               : text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

} // namespace

IniFile::IniFile(const std::string& bytes) {
    std::string line;
    size_t number = 1;
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] != '\r' && bytes[i] != '\n') {
            line += bytes[i];
            continue;
        }
        readLine(line, number++);
        line.clear();
        if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') {
            ++i;
        }
    }
    readLine(line, number);
}

void IniFile::readLine(const std::string& line, size_t number) {
    const size_t hash = line.find('#');
    const std::string text = trimmed(line.substr(0, hash));
    const size_t equals = text.find('=');
    const std::string key = trimmed(text.substr(0, equals));
    if (equals != std::string::npos && !key.empty()) {
        const std::string value = trimmed(text.substr(equals + 1));
        const bool cut = hash != std::string::npos && !value.empty() &&
                         std::string(kBlanks).find(line[hash - 1]) == std::string::npos;
        mSettings.push_back({key, value, number, cut});
    } else if (!text.empty() && text.front() != '[' && text.front() != ';') {
        mStrayLines.push_back(number);
    }
}

const IniFile::Setting* IniFile::find(const std::string& key) const {
    const auto found = std::find_if(mSettings.begin(), mSettings.end(),
                                    [&](const Setting& setting) { return setting.key == key; });
    return found == mSettings.end() ? nullptr : &*found;
}

std::string IniFile::value(const std::string& key) const {
    const Setting* setting = find(key);
    return setting == nullptr ? std::string() : setting->value;
}

} // namespace vesk::doctor
