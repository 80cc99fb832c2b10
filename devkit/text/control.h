#ifndef VESK_DEVKIT_TEXT_CONTROL_H
#define VESK_DEVKIT_TEXT_CONTROL_H

#include <cstdint>
#include <string_view>

namespace vesk::text {

/// The code point of a character in UTF-8, or of a byte that belongs to none.
inline uint32_t codePoint(std::string_view character) {
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

/// Whether it is a control character of any kind, line feed and tab included, or one that changes
/// the order or the lines in which others appear.
inline bool isControl(uint32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x061C || code == 0x200E ||
           code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

} // namespace vesk::text

#endif
