#ifndef VESK_DEVKIT_LOGREAD_LOGREADER_H
#define VESK_DEVKIT_LOGREAD_LOGREADER_H

#include <optional>

#include "recorddecoder.h"
#include "recordfilter.h"
#include "recordsplitter.h"
#include "redactor.h"

namespace vesk::logread {

/// Splits, decodes, redacts and filters, and hands over what is left.
class LogReader {
public:
    LogReader(RecordConsumer& consumer, RecordFilter filter, bool redact);

    void feed(std::string_view bytes) { mSplitter.feed(bytes); }
    /// The end of the file.
    void flush() { mSplitter.flush(); }
    /// For a file that is still written: hands over the last record when it looks whole.
    void flushWhole();
    /// The file was replaced by another one.
    void startAnew();
    uint64_t foreignBytes() const { return mSplitter.foreignBytes(); }

private:
    void take(const RawRecord& raw);
    void redact(LogRecord& record);

    RecordConsumer& mConsumer;
    RecordFilter mFilter;
    std::optional<Redactor> mRedactor;
    RecordDecoder mDecoder;
    std::string mHead, mMethod, mMessage;
    RecordSplitter mSplitter;
};

} // namespace vesk::logread

#endif
