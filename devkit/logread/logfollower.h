#ifndef VESK_DEVKIT_LOGREAD_LOGFOLLOWER_H
#define VESK_DEVKIT_LOGREAD_LOGFOLLOWER_H

#include <cstdint>
#include <filesystem>
#include <string>

#include "logreader.h"

namespace vesk::logread {

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
