#ifndef VESK_DEVKIT_COMMON_TEXT_H
#define VESK_DEVKIT_COMMON_TEXT_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::devkit {

/// Whatever the locale.
inline bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The text without the blanks and tabs around it.
std::string_view trimmed(std::string_view text);

/// The parts between the separators, empty ones too; none of an empty text.
std::vector<std::string> split(std::string_view text, char separator);

/// A character in UTF-8, or a byte that belongs to none.
struct Character {
    std::string_view bytes;
    uint32_t code = 0; ///< the code point; that byte's value when it belongs to none
    bool isValid = false;
};

/// The one that begins @p text, which is not empty.
Character firstCharacter(std::string_view text);

/// Whether it is a control character of any kind, line feed and tab included, or one that changes
/// the order or the lines in which others appear.
bool isControl(uint32_t code);

/// The text with "?" for control characters and for bytes that are not UTF-8: what others have sent
/// must neither steer a terminal nor break a line.
std::string printable(std::string_view text);

} // namespace vesk::devkit

#endif
