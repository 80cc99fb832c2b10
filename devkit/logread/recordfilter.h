#ifndef VESK_DEVKIT_LOGREAD_RECORDFILTER_H
#define VESK_DEVKIT_LOGREAD_RECORDFILTER_H

#include <string>

#include "logrecord.h"

namespace vesk::logread {

/// Passes the records that meet every condition that is set.
class RecordFilter {
public:
    /// That level and the graver ones: 'D', 'I', 'W', 'E'.
    void setLevel(char level) { mLevel = level; }
    /// Records that hold this sequence id.
    void setSequenceId(std::string id) { mSequenceId = std::move(id); }
    /// From this time on, "2026-11-24 13:53:09" or the beginning of it.
    void setSince(std::string time) { mSince = std::move(time); }

    /// A record without a time goes with the one before it.
    bool passes(const LogRecord& record);

private:
    char mLevel = 'D';
    std::string mSequenceId;
    std::string mSince;
    bool mIsTime = false;
};

} // namespace vesk::logread

#endif
