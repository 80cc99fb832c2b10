#include "text.h"

#include <algorithm>

namespace vesk::devkit {

std::string_view trimmed(std::string_view text) {
    constexpr const char* kBlanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (size_t at = 0; !text.empty() && at <= text.size();) {
        const size_t end = std::min(text.find(separator, at), text.size());
        parts.emplace_back(text.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

size_t utf8Length(std::string_view text) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    const size_t length = first < 0x80   ? 1
                          : first < 0xC2 ? 0
                          : first < 0xE0 ? 2
                          : first < 0xF0 ? 3
                                         : 4;
    if (length == 0 || first > 0xF4 || length > text.size()) {
        return 0;
    }
    for (size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80) {
            return 0;
        }
    }
    // Overlong forms, surrogates, and what lies beyond the last character.
    const bool wrong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xED && byte(1) > 0x9F) ||
                       (first == 0xF0 && byte(1) < 0x90) || (first == 0xF4 && byte(1) > 0x8F);
    return wrong ? 0 : length;
}

std::string_view firstCharacter(std::string_view text) {
    return text.substr(0, text.empty() ? 0 : std::max<size_t>(utf8Length(text), 1));
}

uint32_t codePoint(std::string_view character) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(character[i]); };
    uint32_t code = byte(0);
    if (character.size() > 1) {
        code &= 0x7FU >> character.size();
    }
    for (size_t i = 1; i < character.size(); ++i) {
        code = code << 6 | (byte(i) & 0x3FU);
    }
    return code;
}

bool isControl(uint32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x061C || code == 0x200E ||
           code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::string_view character = firstCharacter(text);
        result += utf8Length(text) == 0 || isControl(codePoint(character)) ? "?" : character;
        text.remove_prefix(character.size());
    }
    return result;
}

} // namespace vesk::devkit
