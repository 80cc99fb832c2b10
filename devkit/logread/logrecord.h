#ifndef VESK_DEVKIT_LOGREAD_LOGRECORD_H
#define VESK_DEVKIT_LOGREAD_LOGRECORD_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace vesk::logread {

/// Scrambled bytes from one prefix up to the next, without the line end.
struct RawRecord {
    std::string_view bytes;
    /// A carriage return stands before every line feed, whatever the line feed means.
    bool textMode = false;
    /// False when the line end is missing: the writer was stopped, or the file's tail is gone.
    bool ended = true;
};

/// The parts of a record. A part that the format has cut off is empty; without a usable header
/// everything is the message.
struct LogRecord {
    /// All that stands before the message, in one piece.
    std::string_view head;
    /// 'D', 'I', 'W' or 'E'; 0 when it is not known.
    char level = 0;
    /// "2026-11-24 13:53:09.383"
    std::string_view time;
    std::string_view file;
    std::string_view method;
    /// 0 when it is not known.
    int line = 0;
    std::string_view message;
    /// The end is missing for certain. A cut that leaves no trace is not seen.
    bool cut = false;
};

/// Is handed the records of a log in their order. A record's texts are valid during the call only.
using RecordConsumer = std::function<void(const LogRecord&)>;

/// Undoes text mode and scrambling, and takes the header apart. The record's texts lie in @p text.
LogRecord decodeRecord(const RawRecord& raw, std::string& text);

/// Splits at the scrambled record prefix: line ends say nothing, because scrambling makes some and
/// messages hold others.
class RecordSplitter {
public:
    /// Gets each record in its order; the bytes are valid during the call only.
    using Sink = std::function<void(const RawRecord&)>;

    explicit RecordSplitter(Sink sink);

    /// Takes the next bytes. The last record waits until the next one begins.
    void feed(std::string_view bytes);
    /// The stream ends here: hands over the record that waits. Feeding may go on afterwards; what
    /// does not begin with a prefix is foreign then.
    void flush();
    /// Ends the stream, and another file follows, of either system.
    void startAnew() {
        flush();
        mTextModeEnds = 0;
        mPlainEnds = 0;
    }

    /// Whether a record waits that ends in a line feed, so that it may be whole.
    bool waitsWithLineEnd() const;
    /// Bytes so far that belong to no record.
    uint64_t foreignBytes() const { return mForeign; }

private:
    size_t findStart(size_t from) const;
    void handOver(size_t end);
    void emit(std::string_view bytes);
    void dropConsumed();

    Sink mSink;
    std::string mBuffer;
    size_t mBegin = 0;  // of the record that waits, or of what is not looked at yet
    size_t mSearch = 0; // no record starts between mBegin and here
    bool mInRecord = false;
    uint64_t mForeign = 0;
    uint64_t mTextModeEnds = 0;
    uint64_t mPlainEnds = 0;
};

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

} // namespace vesk::logread

#endif
