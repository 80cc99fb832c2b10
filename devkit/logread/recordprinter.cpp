#include "recordprinter.h"

#include <algorithm>
#include <cstdio>

#include "common/jsonline.h"
#include "common/text.h"

namespace vesk::logread {

namespace {

constexpr size_t kPieceSize = 0x40000;

bool isPlain(char c) {
    return c >= 0x20 && c < 0x7F;
}

/// Appends the character that begins the text and takes it away.
void appendCharacter(std::string& out, std::string_view& text) {
    const auto [character, code, isValid] = devkit::firstCharacter(text);
    text.remove_prefix(character.size());
    if (character == "\n" || character == "\t" || !devkit::isControl(code)) {
        out.append(character);
    } else if (character != "\r" || text.substr(0, 1) != "\n") {
        for (const char byte : character) {
            char escape[8] = {};
            std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(byte));
            out.append(escape);
        }
    }
}

void appendMember(std::string& out, std::string_view name, std::string_view text) {
    out.append(name);
    if (text.empty()) {
        out.append("null");
    } else {
        devkit::appendJsonText(out, text);
    }
}

} // namespace

void appendPrintable(std::string& out, std::string_view text) {
    while (!text.empty()) {
        const auto special = std::find_if_not(text.begin(), text.end(), isPlain);
        const auto plain = static_cast<size_t>(special - text.begin());
        out.append(text.substr(0, plain));
        text.remove_prefix(plain);
        if (!text.empty()) {
            appendCharacter(out, text);
        }
    }
}

void appendAsText(std::string& out, const LogRecord& record) {
    appendPrintable(out, record.head);
    appendPrintable(out, record.message);
    out.append(record.cut ? " [cut]\n" : "\n");
}

void appendAsJson(std::string& out, const LogRecord& record) {
    appendMember(out, "{\"time\":", record.time);
    appendMember(out, ",\"level\":", std::string_view(&record.level, record.level == 0 ? 0 : 1));
    appendMember(out, ",\"file\":", record.file);
    appendMember(out, ",\"method\":", record.method);
    out.append(",\"line\":").append(record.line == 0 ? "null" : std::to_string(record.line));
    out.append(",\"message\":");
    devkit::appendJsonText(out, record.message);
    out.append(record.cut ? ",\"cut\":true}\n" : ",\"cut\":false}\n");
}

void RecordPrinter::take(const LogRecord& record) {
    mFormat(mOut, record);
    if (mOut.size() >= kPieceSize) {
        flush();
    }
}

void RecordPrinter::flush() {
    if (!mOut.empty()) {
        mWrite(mOut);
        mOut.clear();
    }
}

} // namespace vesk::logread
