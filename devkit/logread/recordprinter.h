#ifndef VESK_DEVKIT_LOGREAD_RECORDPRINTER_H
#define VESK_DEVKIT_LOGREAD_RECORDPRINTER_H

#include <functional>
#include <string>

#include "logrecord.h"

namespace vesk::logread {

/// Turns one record into text, line end included.
class RecordFormat {
public:
    virtual ~RecordFormat() = default;
    virtual void append(std::string& out, const LogRecord& record) const = 0;
};

/// The record as the SDK has written it, before scrambling.
class TextFormat : public RecordFormat {
public:
    void append(std::string& out, const LogRecord& record) const override;
};

/// One JSON object a record; what is not known is null.
class JsonFormat : public RecordFormat {
public:
    void append(std::string& out, const LogRecord& record) const override;
};

/// Collects what a format makes and writes it in large pieces.
class RecordPrinter : public RecordConsumer {
public:
    using Write = std::function<void(std::string_view)>;

    RecordPrinter(const RecordFormat& format, Write write);

    void take(const LogRecord& record) override;
    /// Writes what is collected.
    void flush();

private:
    const RecordFormat& mFormat;
    Write mWrite;
    std::string mOut;
};

} // namespace vesk::logread

#endif
