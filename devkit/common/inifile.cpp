#include "inifile.h"

#include <algorithm>

#include "text.h"

namespace vesk::devkit {

IniFile::IniFile(std::string_view bytes, Comments comments) {
    size_t number = 1;
    for (size_t at = 0; at <= bytes.size(); ++number) {
        const size_t end = std::min(bytes.find_first_of("\r\n", at), bytes.size());
        readLine(bytes.substr(at, end - at), number, comments);
        at = end + (bytes.substr(end, 2) == "\r\n" ? 2 : 1);
    }
}

void IniFile::readLine(std::string_view line, size_t number, Comments comments) {
    const bool isComment = trimmed(line).substr(0, 1) == "#";
    const size_t hash =
        comments == Comments::Anywhere || isComment ? line.find('#') : std::string_view::npos;
    const std::string_view text = trimmed(line.substr(0, hash));
    const size_t equals = text.find('=');
    const std::string_view key = trimmed(text.substr(0, equals));
    if (equals != std::string_view::npos && !key.empty()) {
        const std::string_view value = trimmed(text.substr(equals + 1));
        const bool cut = hash != std::string_view::npos && !value.empty() &&
                         trimmed(line.substr(hash - 1, 1)).size() == 1;
        mSettings.push_back({std::string(key), std::string(value), number, cut});
    } else if (!text.empty() && text.front() != '[' && text.front() != ';') {
        mStrayLines.push_back(number);
    }
}

const IniFile::Setting* IniFile::find(std::string_view key) const {
    const auto found = std::find_if(mSettings.begin(), mSettings.end(),
                                    [&](const Setting& setting) { return setting.key == key; });
    return found == mSettings.end() ? nullptr : &*found;
}

std::string IniFile::value(std::string_view key, std::string_view otherwise) const {
    const Setting* setting = find(key);
    return setting == nullptr ? std::string(otherwise) : setting->value;
}

} // namespace vesk::devkit
