#ifndef VESK_DEVKIT_LOGREAD_LOGREADER_H
#define VESK_DEVKIT_LOGREAD_LOGREADER_H

#include <optional>
#include <string>

#include "recordsplitter.h"
#include "redactor.h"

namespace vesk::logread {

/// Passes the records that meet every condition that is set.
struct RecordFilter {
    /// That level and the more severe ones: 'D', 'I', 'W', 'E'.
    char level = 'D';
    /// Records that hold this sequence id.
    std::string sequenceId;
    /// From this time on, "2026-11-24 13:53:09" or the beginning of it.
    std::string since;

    /// A record without a time goes with the one before it.
    bool passes(const LogRecord& record);

private:
    bool mIsTime = false;
};

/// Whether the text is "YYYY-MM-DD HH:MM[:SS]".
bool isTime(std::string_view text);

/// Whether the text is "HH:MM[:SS]".
bool isTimeOfDay(std::string_view text);

/// Splits, decodes, redacts and filters, and hands over what is left.
class LogReader {
public:
    LogReader(RecordConsumer consumer, RecordFilter filter, bool redact);

    void feed(std::string_view bytes) { mSplitter.feed(bytes); }
    /// The end of the file.
    void flush() { mSplitter.flush(); }
    /// For a file that is still written: hands over the last record when it looks whole.
    void flushWhole();
    /// The file was replaced by another one.
    void startAnew() { mSplitter.startAnew(); }
    uint64_t foreignBytes() const { return mSplitter.foreignBytes(); }

private:
    void take(const RawRecord& raw);
    void redact(LogRecord& record);

    const RecordConsumer mConsumer;
    RecordFilter mFilter;
    std::optional<Redactor> mRedactor;
    std::string mText, mHead, mMethod, mMessage;
    RecordSplitter mSplitter;
};

} // namespace vesk::logread

#endif
