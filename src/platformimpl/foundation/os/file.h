#ifndef VESK_PLATFORMIMPL_FOUNDATION_OS_FILE_H
#define VESK_PLATFORMIMPL_FOUNDATION_OS_FILE_H

#include <cstdint>
#include <cstdio>
#include <string>

namespace Braxel {
namespace VESK {
namespace os {

/// Size in bytes of the file at @p path; -1 when it cannot be told.
int64_t FileSize(const std::string& path);

/// How far apart two changes of a file have to be to bear different times, on any file system.
constexpr int64_t kFileTimeSeconds = 2;

/// What tells one state of a file from another. Times are in the system's own unit.
struct FileStamp {
    int64_t size = -1; ///< -1: no plain file
    uint64_t id = 0;
    int64_t modified = 0;
    int64_t changed = 0;    ///< unlike the one before, no program can set it
    bool isSettled = false; ///< so old that no change from now on can bear the same times

    bool operator==(const FileStamp& other) const {
        return size == other.size && id == other.id && modified == other.modified &&
               changed == other.changed;
    }
};

/// The state of the plain file at @p path. Opens nothing that blocks.
FileStamp StampOf(const std::string& path);

/// Opens the text file at @p path like std::fopen(), which sets errno. Null for what is not a plain
/// file, too: opening it may block. A file that this makes is the user's alone.
/// @param mode "r" or "w"
std::FILE* OpenPlainFile(const std::string& path, const char* mode);

/// A name beside @p path that nobody else uses, in this process or another.
std::string AsideName(const std::string& path);

/// Puts the file @p aside in the place of @p path at one stroke: whoever opens that finds the old
/// one or the new one. What is not a plain file there stays. May wait for a moment.
/// @return whether it was done; @p aside is still there when not
bool MoveOver(const std::string& aside, const std::string& path);

/// Opens the text file at @p path, makes it if there is none, appends @p line in one go and closes
/// it. What is not a plain file is left alone, and a file that this makes is the user's alone.
/// @param line with its line end
/// @return whether all was written
bool AppendLine(const std::string& path, const std::string& line);

/// Whether something is at @p path that is no plain file, or one of more than @p maxBytes. Opens
/// nothing, so nothing blocks.
bool IsOtherThanPlainFile(const std::string& path, int64_t maxBytes);

} // namespace os
} // namespace VESK
} // namespace Braxel

#endif
