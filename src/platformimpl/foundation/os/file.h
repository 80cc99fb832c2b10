#ifndef VESK_PLATFORMIMPL_FOUNDATION_OS_FILE_H
#define VESK_PLATFORMIMPL_FOUNDATION_OS_FILE_H

#include <cstdint>
#include <cstdio>
#include <string>

namespace Braxel {
namespace VESK {
namespace os {

/// Size in bytes of the file at @p path; -1 when it cannot be told or does not fit 32 bits.
int32_t FileSize(const std::string& path);

/// Opens the text file at @p path like std::fopen(). Null for what is not a plain file, too:
/// opening it may block. A file that this makes is the user's alone.
/// @param mode "r" or "w"
std::FILE* OpenPlainFile(const std::string& path, const char* mode);

/// Opens the text file at @p path, makes it if there is none, appends @p line in one go and closes
/// it. What is not a plain file is left alone, and a file that this makes is the user's alone.
/// @param line with its line end
/// @return whether all was written
bool AppendLine(const std::string& path, const std::string& line);

} // namespace os
} // namespace VESK
} // namespace Braxel

#endif
