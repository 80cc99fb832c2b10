#ifndef VESK_DEVKIT_LOGREAD_LOGFILE_H
#define VESK_DEVKIT_LOGREAD_LOGFILE_H

#include <filesystem>
#include <fstream>

namespace vesk::logread {

/// Opens a log to read its bytes; the stream has failed when it cannot be read. Throws when it is
/// no plain file: a pipe or device may never end, and even opening it may never return.
std::ifstream openLog(const std::filesystem::path& path);

} // namespace vesk::logread

#endif
