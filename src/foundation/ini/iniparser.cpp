#include "foundation/ini/iniparser.h"

#include "foundation/log/vesklogger.h"

namespace Braxel {
namespace VESK {

namespace {

std::string Trim(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

void ParseLine(const std::string& line, std::map<std::string, std::string>& cache) {
    const std::string text = line.substr(0, line.find('#'));
    const size_t equals = text.find('=');
    if (equals == std::string::npos) {
        return;
    }
    const std::string key = Trim(text.substr(0, equals));
    if (!key.empty()) {
        // Deliberate: the first occurrence of a key wins.
        cache.emplace(key, Trim(text.substr(equals + 1)));
    }
}

} // namespace

bool INIParser::ParseINI(const std::string& content,
                         std::map<std::string, std::string>& cache) const {
    if (content.empty()) {
        VESK_LOG_DEBUG("INIParser::ParseINI", "check ini file please, it may be empty !!!!");
        return false;
    }
    size_t begin = 0;
    while (begin < content.size()) {
        const size_t end = content.find_first_of("\r\n", begin);
        if (end == std::string::npos) {
            ParseLine(content.substr(begin), cache);
            break;
        }
        ParseLine(content.substr(begin, end - begin), cache);
        begin = end + 1;
    }
    return true;
}

} // namespace VESK
} // namespace Braxel
