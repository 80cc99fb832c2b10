#ifndef VESK_DEVKIT_COMMON_FILE_H
#define VESK_DEVKIT_COMMON_FILE_H

#include <filesystem>
#include <string>
#include <string_view>

namespace vesk::devkit {

// Neither keeps anybody from writing, replacing or removing the file meanwhile.

/// The file's bytes; none when it cannot be read or is no regular file: opening a FIFO would wait.
std::string readFile(const std::filesystem::path& file);

/// Appends in one piece, to a new file when there is none.
void appendToFile(const std::filesystem::path& file, std::string_view bytes);

} // namespace vesk::devkit

#endif
