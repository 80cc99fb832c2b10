#ifndef VESK_DEVKIT_LOGREAD_LOGFILE_H
#define VESK_DEVKIT_LOGREAD_LOGFILE_H

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "logreader.h"

namespace vesk::logread {

/// Opens a log to read its bytes; the stream has failed when it cannot be read. Throws when it is
/// no plain file: a pipe or device may never end, and even opening it may never return.
std::ifstream openLog(const std::filesystem::path& path);

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
