#ifndef VESK_DEVKIT_COMMON_TEXT_H
#define VESK_DEVKIT_COMMON_TEXT_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
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

/// Appends text as a JSON string, with quotes. What is not UTF-8 becomes U+FFFD, and no character
/// is left that could steer a terminal.
void appendJsonText(std::string& out, std::string_view text);

/// Builds one JSON object on one line.
class JsonLine {
public:
    JsonLine& add(std::string_view name, std::string_view value);
    JsonLine& add(std::string_view name, const char* value) {
        return add(name, std::string_view(value));
    }
    /// A number or a truth value.
    template <typename Value, typename = std::enable_if_t<std::is_integral_v<Value>>>
    JsonLine& add(std::string_view name, Value value) {
        if constexpr (std::is_same_v<Value, bool>) {
            return addRaw(name, value ? "true" : "false");
        } else {
            return addRaw(name, std::to_string(value));
        }
    }
    /// @param json a whole value as it shall stand there
    JsonLine& addRaw(std::string_view name, std::string_view json);

    /// The object as it is by now, without a line's end.
    std::string text() const { return '{' + mMembers + '}'; }

private:
    std::string mMembers;
};

/// The members of a JSON object: texts as they are, numbers and truth values as they are written,
/// arrays, objects and null without anything. Of two with one name the first.
using JsonMembers = std::map<std::string, std::string>;

/// Nothing when the text is no JSON object in UTF-8.
std::optional<JsonMembers> readJsonObject(std::string_view text);

} // namespace vesk::devkit

#endif
