#include "recordprinter.h"

#include <utility>

#include "printabletext.h"

namespace vesk::logread {

namespace {

constexpr size_t kPieceSize = 0x40000;

void appendMember(std::string& out, std::string_view name, std::string_view text) {
    out.append(name);
    if (text.empty()) {
        out.append("null");
    } else {
        appendJsonText(out, text);
    }
}

} // namespace

void TextFormat::append(std::string& out, const LogRecord& record) const {
    appendPrintable(out, record.head);
    appendPrintable(out, record.message);
    out.append(record.cut ? " [cut]\n" : "\n");
}

void JsonFormat::append(std::string& out, const LogRecord& record) const {
    appendMember(out, "{\"time\":", record.time);
    appendMember(out, ",\"level\":", std::string_view(&record.level, record.level == 0 ? 0 : 1));
    appendMember(out, ",\"file\":", record.file);
    appendMember(out, ",\"method\":", record.method);
    out.append(",\"line\":").append(record.line == 0 ? "null" : std::to_string(record.line));
    out.append(",\"message\":");
    appendJsonText(out, record.message);
    out.append(record.cut ? ",\"cut\":true}\n" : ",\"cut\":false}\n");
}

RecordPrinter::RecordPrinter(const RecordFormat& format, Write write)
    : mFormat(format), mWrite(std::move(write)) {}

void RecordPrinter::take(const LogRecord& record) {
    mFormat.append(mOut, record);
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
