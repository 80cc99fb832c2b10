#include "printable.h"

#include "common/text.h"

namespace vesk::doctor {

std::string printable(std::string_view rest) {
    std::string result;
    while (!rest.empty()) {
        const size_t length = devkit::utf8Length(rest);
        if (length == 0 || devkit::isControl(devkit::codePoint(rest.substr(0, length)))) {
            result += '?';
        } else {
            result += rest.substr(0, length);
        }
        rest.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

} // namespace vesk::doctor
