#ifndef VESK_DEVKIT_LOGREAD_LOGRECORD_H
#define VESK_DEVKIT_LOGREAD_LOGRECORD_H

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

} // namespace vesk::logread

#endif
