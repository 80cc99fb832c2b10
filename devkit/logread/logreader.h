#ifndef VESK_DEVKIT_LOGREAD_LOGREADER_H
#define VESK_DEVKIT_LOGREAD_LOGREADER_H

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>

#include "logrecord.h"
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

/// Reads a log to its end. Throws when that is not possible.
void readLog(const std::filesystem::path& path, LogReader& reader);

/// The day of a log's last record, "2026-11-24"; empty when there is none.
std::string lastDay(const std::filesystem::path& path);

/// Reads what is new in a file each time it is asked, and notices when it is another file. It keeps
/// the file open at no time: the SDK deletes a large log, which Windows would refuse.
class LogFollower {
public:
    LogFollower(std::filesystem::path file, LogReader& reader);

    /// Hands what is new to the reader; when nothing is, the record that waits as well.
    /// @return false when the file cannot be read at present. Throws when it is no plain file.
    bool poll();

private:
    bool isAnotherFile(std::istream& file, uint64_t size) const;

    std::filesystem::path mPath;
    LogReader& mReader;
    uint64_t mOffset = 0;
    // The first bytes hold the time of the first record, so that no two logs begin alike.
    std::string mFirstBytes;
    std::string mBuffer;
};

} // namespace vesk::logread

#endif
