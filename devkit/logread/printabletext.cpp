#include "printabletext.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "common/text.h"

namespace vesk::logread {

namespace {

constexpr uint64_t kOnes = 0x0101010101010101U;
constexpr uint64_t kHighBits = 0x8080808080808080U;

/// Whether eight bytes are plain ASCII; may deny it of bytes beside one that is not.
bool isPlain(const char* bytes) {
    uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    const uint64_t deletes = word ^ (kOnes * 0x7F);
    const uint64_t found = ((word - kOnes * 0x20) & ~word) | ((deletes - kOnes) & ~deletes) | word;
    return (found & kHighBits) == 0;
}

/// The character that begins a text, or the byte that belongs to none.
std::string_view firstCharacter(std::string_view text) {
    const size_t length = devkit::utf8Length(text);
    return text.substr(0, length == 0 ? 1 : length);
}

void appendEscape(std::string& out, const char* format, unsigned value) {
    char escape[8] = {};
    std::snprintf(escape, sizeof escape, format, value);
    out.append(escape);
}

/// @return behind the character
size_t appendCharacter(std::string& out, std::string_view text, size_t at) {
    const std::string_view character = firstCharacter(text.substr(at));
    const size_t end = at + character.size();
    if (character == "\n" || character == "\t" ||
        !devkit::isControl(devkit::codePoint(character))) {
        out.append(character);
    } else if (character != "\r" || text.substr(end, 1) != "\n") {
        for (const char byte : character) {
            appendEscape(out, "\\x%02x", static_cast<unsigned char>(byte));
        }
    }
    return end;
}

} // namespace

void appendPrintable(std::string& out, std::string_view text) {
    size_t plainFrom = 0;
    size_t i = 0;
    while (i < text.size()) {
        if (i + 8 <= text.size() && isPlain(text.data() + i)) {
            i += 8;
            continue;
        }
        out.append(text.substr(plainFrom, i - plainFrom));
        const size_t end = i + 8 < text.size() ? i + 8 : text.size();
        while (i < end) {
            i = appendCharacter(out, text, i);
        }
        plainFrom = i;
    }
    out.append(text.substr(plainFrom));
}

void appendJsonText(std::string& out, std::string_view text) {
    out.push_back('"');
    while (!text.empty()) {
        const std::string_view character = firstCharacter(text);
        const uint32_t code = devkit::codePoint(character);
        if (devkit::utf8Length(text) == 0) {
            out.append("\\ufffd");
        } else if (character == "\"" || character == "\\") {
            out.append("\\").append(character);
        } else if (character == "\n") {
            out.append("\\n");
        } else if (devkit::isControl(code)) {
            appendEscape(out, "\\u%04x", code);
        } else {
            out.append(character);
        }
        text.remove_prefix(character.size());
    }
    out.push_back('"');
}

} // namespace vesk::logread
