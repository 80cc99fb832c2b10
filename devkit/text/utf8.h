#ifndef VESK_DEVKIT_TEXT_UTF8_H
#define VESK_DEVKIT_TEXT_UTF8_H

#include <cstddef>
#include <string_view>

namespace vesk::text {

/// How many bytes the character has that begins @p text, which is not empty; 0 when none does.
inline size_t utf8Length(std::string_view text) {
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

} // namespace vesk::text

#endif
