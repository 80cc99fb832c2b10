#include "printabletext.h"

#include "utf8.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

namespace vesk::logread {

namespace {

constexpr uint64_t kOnes = 0x0101010101010101U;
constexpr uint64_t kHighBits = 0x8080808080808080U;

/// Whether one of eight bytes is a control character; may say so of bytes beside one.
bool hasControl(const char* bytes) {
    uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    const uint64_t deletes = word ^ (kOnes * 0x7F);
    const uint64_t found = ((word - kOnes * 0x20) & ~word) | ((deletes - kOnes) & ~deletes);
    return (found & kHighBits) != 0;
}

void appendByte(std::string& out, std::string_view text, size_t at) {
    const auto c = static_cast<unsigned char>(text[at]);
    if (c == '\r' && at + 1 < text.size() && text[at + 1] == '\n') {
        return;
    }
    if ((c >= 0x20 && c != 0x7F) || c == '\n' || c == '\t') {
        out.push_back(text[at]);
        return;
    }
    char escape[8] = {};
    std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(c));
    out.append(escape);
}

} // namespace

void appendPrintable(std::string& out, std::string_view text) {
    size_t plainFrom = 0;
    size_t i = 0;
    while (i < text.size()) {
        if (i + 8 <= text.size() && !hasControl(text.data() + i)) {
            i += 8;
            continue;
        }
        out.append(text.substr(plainFrom, i - plainFrom));
        const size_t end = i + 8 < text.size() ? i + 8 : text.size();
        for (; i < end; ++i) {
            appendByte(out, text, i);
        }
        plainFrom = i;
    }
    out.append(text.substr(plainFrom));
}

void appendJsonText(std::string& out, std::string_view text) {
    out.push_back('"');
    while (!text.empty()) {
        const size_t length = vesk::text::utf8Length(text);
        const char c = text[0];
        if (length == 0) {
            out.append("\\ufffd");
        } else if (c == '"' || c == '\\') {
            out.append({'\\', c});
        } else if (c == '\n') {
            out.append("\\n");
        } else if (length == 1 && (c < 0x20 || c == 0x7F)) {
            char escape[8] = {};
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
            out.append(escape);
        } else {
            out.append(text.substr(0, length));
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    out.push_back('"');
}

} // namespace vesk::logread
