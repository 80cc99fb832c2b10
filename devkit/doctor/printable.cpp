#include "printable.h"

#include "control.h"
#include "utf8.h"

namespace vesk::doctor {

std::string printable(std::string_view rest) {
    std::string result;
    while (!rest.empty()) {
        const size_t length = text::utf8Length(rest);
        if (length == 0 || text::isControl(text::codePoint(rest.substr(0, length)))) {
            result += '?';
        } else {
            result += rest.substr(0, length);
        }
        rest.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

} // namespace vesk::doctor
