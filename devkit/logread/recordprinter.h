#ifndef VESK_DEVKIT_LOGREAD_RECORDPRINTER_H
#define VESK_DEVKIT_LOGREAD_RECORDPRINTER_H

#include <functional>
#include <string>

#include "logrecord.h"

namespace vesk::logread {

/// Appends text with the bytes of its control characters as "\x1b", so that a log cannot steer the
/// terminal, nor show its text in another order. Line feeds and tabs stay; a carriage return before
/// a line feed is left out.
void appendPrintable(std::string& out, std::string_view text);

/// Appends one record as text, line end included.
using RecordFormat = void (*)(std::string& out, const LogRecord& record);

/// The record as the SDK has written it, before scrambling.
void appendAsText(std::string& out, const LogRecord& record);

/// One JSON object a record; what is not known is null.
void appendAsJson(std::string& out, const LogRecord& record);

/// Collects what a format makes and writes it in large pieces.
class RecordPrinter {
public:
    using Write = std::function<void(std::string_view)>;

    RecordPrinter(RecordFormat format, Write write) : mFormat(format), mWrite(std::move(write)) {}

    void take(const LogRecord& record);
    /// Writes what is collected.
    void flush();

private:
    const RecordFormat mFormat;
    Write mWrite;
    std::string mOut;
};

} // namespace vesk::logread

#endif
