#ifndef VESK_DEVKIT_LOGREAD_TIMESTAMP_H
#define VESK_DEVKIT_LOGREAD_TIMESTAMP_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vesk::logread {

/// Milliseconds of "2026-11-24 13:53:09.383"; only the difference of two means something.
std::optional<int64_t> toMilliseconds(std::string_view time);

/// Whether the text is "YYYY-MM-DD HH:MM[:SS]".
bool isTime(std::string_view text);

/// Whether the text is "HH:MM[:SS]".
bool isTimeOfDay(std::string_view text);

} // namespace vesk::logread

#endif
