#ifndef VESK_DEVKIT_LOGREAD_LASTTIME_H
#define VESK_DEVKIT_LOGREAD_LASTTIME_H

#include <filesystem>
#include <string>

namespace vesk::logread {

/// The day of a log's last record, "2026-11-24"; empty when there is none.
std::string lastDay(const std::filesystem::path& file);

} // namespace vesk::logread

#endif
