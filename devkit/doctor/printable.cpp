#include "printable.h"

#include <cstddef>

namespace vesk::doctor {

namespace {

/// The length of the UTF-8 character at the beginning of @p text; 0 when there is none.
size_t characterLength(std::string_view text) {
    const auto byteAt = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byteAt(0);
    if (first < 0x80) {
        return 1;
    }
    const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) {
        return 0;
    }
    for (size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    // Overlong forms, surrogates, and what lies beyond the last plane.
    const unsigned second = byteAt(1);
    const bool refused = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                         (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F) ||
                         (first == 0xC2 && second < 0xA0); // C1 controls
    return refused ? 0 : length;
}

} // namespace

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const size_t length = characterLength(text);
        const auto first = static_cast<unsigned char>(text[0]);
        if (length == 0 || first < 0x20 || first == 0x7F) {
            result += '?';
            text.remove_prefix(1);
        } else {
            result += text.substr(0, length);
            text.remove_prefix(length);
        }
    }
    return result;
}

} // namespace vesk::doctor
