#include "jsonescapes.h"

#include <charconv>

namespace vesk::logread {

namespace {

// Six levels of JSON inside JSON. Each doubles the backslashes, so there has to be an end.
constexpr size_t kMostBackslashes = 64;
constexpr size_t kLengthOfCode = 5;

/// The character of a code "u0065" that begins a text; 0 when none does or it is not printable.
char codedCharacter(std::string_view text) {
    if (text.substr(0, 3) != "u00" || text.size() < kLengthOfCode) {
        return 0;
    }
    unsigned code = 0;
    const char* const end = text.data() + kLengthOfCode;
    if (std::from_chars(text.data() + 3, end, code, 16).ptr != end) {
        return 0;
    }
    return code >= 0x20 && code < 0x7F ? static_cast<char>(code) : '\0';
}

/// How many backslashes say the same as this many before a character's code, besides the character;
/// a backslash is one of them.
size_t plainBackslashes(char c, size_t beforeCode) {
    const size_t own = c == '"' ? 1 : 0;
    if (beforeCode % 2 == 0) {
        // The code belongs to a text inside this one, where half of them are left.
        return 2 * plainBackslashes(c, beforeCode / 2) + own;
    }
    return beforeCode - 1 + (c == '\\' ? 2 : own);
}

} // namespace

std::string withoutJsonEscapes(std::string_view text) {
    if (text.find("\\u00") == std::string_view::npos) {
        return std::string(text);
    }
    std::string out;
    size_t backslashes = 0; // at the end of out
    for (size_t at = 0; at < text.size(); ++at) {
        const char c = codedCharacter(text.substr(at));
        if (c == 0 || backslashes == 0 || backslashes > kMostBackslashes) {
            out.push_back(text[at]);
            backslashes = text[at] == '\\' ? backslashes + 1 : 0;
            continue;
        }
        out.resize(out.size() - backslashes);
        backslashes = plainBackslashes(c, backslashes);
        out.append(backslashes, '\\');
        if (c != '\\') {
            out.push_back(c);
            backslashes = 0;
        }
        at += kLengthOfCode - 1;
    }
    return out;
}

} // namespace vesk::logread
