#ifndef VESK_DEVKIT_LOGREAD_RAWRECORD_H
#define VESK_DEVKIT_LOGREAD_RAWRECORD_H

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

} // namespace vesk::logread

#endif
