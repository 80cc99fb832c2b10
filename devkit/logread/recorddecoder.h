#ifndef VESK_DEVKIT_LOGREAD_RECORDDECODER_H
#define VESK_DEVKIT_LOGREAD_RECORDDECODER_H

#include <string>

#include "logrecord.h"

namespace vesk::logread {

/// Undoes text mode and scrambling, and takes the header apart.
class RecordDecoder {
public:
    /// The record's texts are valid until the next call.
    LogRecord decode(const RawRecord& raw);

private:
    void undoTextMode(const RawRecord& raw);
    void unscramble(size_t end);
    void flip(size_t at);

    std::string mText;
};

/// Takes readable text apart. @return false when the header does not reach its end.
bool parseRecord(std::string_view text, LogRecord& record);

} // namespace vesk::logread

#endif
