#include "printable.h"

#include "utf8.h"

namespace vesk::doctor {

std::string printable(std::string_view rest) {
    std::string result;
    while (!rest.empty()) {
        const size_t length = text::utf8Length(rest);
        const auto first = static_cast<unsigned char>(rest[0]);
        // U+0080 to U+009F are control characters as well.
        const bool control =
            first < 0x20 || first == 0x7F ||
            (first == 0xC2 && length == 2 && static_cast<unsigned char>(rest[1]) < 0xA0);
        if (length == 0 || control) {
            result += '?';
        } else {
            result += rest.substr(0, length);
        }
        rest.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

} // namespace vesk::doctor
