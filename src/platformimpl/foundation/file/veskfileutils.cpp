#include "platformimpl/foundation/file/veskfileutils.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <memory>

#include "foundation/log/vesklogger.h"
#include "module/veskmodule.h"
#include "platformimpl/foundation/os/file.h"

namespace Braxel {
namespace VESK {

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

FilePtr Open(const std::string& directory, const std::string& path, const char* mode) {
    // Without a directory the name alone would lie in the working directory.
    return FilePtr(directory.empty() ? nullptr : os::OpenPlainFile(path, mode));
}

constexpr std::ptrdiff_t kLongestPiece = 1023;

/// Reads the file. False when it is longer than @p limit: half a setting or half a player's id is
/// worse than none.
bool ReadAll(std::FILE* file, size_t limit, std::string& content) {
    std::string bytes;
    char block[1024];
    size_t length = 0;
    while ((length = std::fread(block, 1, sizeof block, file)) != 0) {
        bytes.append(block, length);
        if (bytes.size() > limit) {
            return false;
        }
    }
    // Deliberate: a zero byte cuts the rest of its piece, which ends with its line or its length.
    for (auto begin = bytes.cbegin(); begin != bytes.cend();) {
        const auto longest = begin + std::min<std::ptrdiff_t>(kLongestPiece, bytes.cend() - begin);
        const auto lineEnd = std::find(begin, longest, '\n');
        const auto end = lineEnd == longest ? longest : lineEnd + 1;
        content.append(begin, std::find(begin, end, '\0'));
        begin = end;
    }
    return true;
}

bool Put(FilePtr file, const std::string& data) {
    const bool put = file && std::fputs(data.c_str(), file.get()) >= 0;
    return file && std::fclose(file.release()) == 0 && put;
}

/// Writes the data aside and puts that in the file's place: neither a kill nor another game of the
/// same folder, nor a full disk, leaves a part of it there.
bool Replace(const std::string& directory, const std::string& path, const std::string& data) {
    const std::string aside = os::AsideName(path);
    std::remove(aside.c_str()); // of a process of that number which was killed
    FilePtr file = Open(directory, aside, "w");
    if (!file) {
        // In a folder that takes no new files there may be one that can be written.
        const bool isReadOnly = errno == EACCES || errno == EPERM;
        return isReadOnly && os::FileSize(path) >= 0 && Put(Open(directory, path, "w"), data);
    }
    if (Put(std::move(file), data) && os::MoveOver(aside, path)) {
        return true;
    }
    std::remove(aside.c_str());
    return false;
}

/// The file's content, logged as that of a @p kind of file under the name @p method.
std::string Read(const char* method, const char* kind, size_t limit, const std::string& name) {
    const std::string directory = LibraryDirectory();
    const std::string path = directory + name;
    VESK_LOG_AT(kLogInfo, method, "Read %s:%s", kind, path.c_str());
    const FilePtr file = Open(directory, path, "r");
    std::string content;
    if (!file || !ReadAll(file.get(), limit, content)) {
        VESK_LOG_AT(kLogError, method, "Read %s error! file path:%s", kind, path.c_str());
        return {};
    }
    VESK_LOG_AT(kLogInfo, method, "Read %s success! Content:\n%s", kind, content.c_str());
    return content;
}

} // namespace

std::string VESKFileUtils::GetLibraryDirectory() const {
    return LibraryDirectory();
}

std::string VESKFileUtils::ReadFile(const std::string& name) const {
    return Read("Braxel::VESK::VESKFileUtils::ReadFile", "file", kLongestFile, name);
}

std::string VESKFileUtils::ReadConfigFile(const std::string& name) const {
    return Read("Braxel::VESK::VESKFileUtils::ReadConfigFile", "config file", kLongestConfigFile,
                name);
}

bool VESKFileUtils::WriteFile(const std::string& name, const std::string& data) const {
    const std::string directory = LibraryDirectory();
    const std::string path = directory + name;
    VESK_LOG_INFO("VESKFileUtils::WriteFile", "Write to file:%s with data:%s", path.c_str(),
                  data.c_str());
    if (directory.empty() || !Replace(directory, path, data)) {
        VESK_LOG_ERROR("VESKFileUtils::WriteFile", "Write file error! file path:%s", path.c_str());
        return false;
    }
    VESK_LOG_INFO("VESKFileUtils::WriteFile", "Write file success!");
    return true;
}

bool VESKFileUtils::RemoveFile(const std::string& name) const {
    const std::string directory = LibraryDirectory();
    return !directory.empty() && std::remove((directory + name).c_str()) == 0;
}

} // namespace VESK
} // namespace Braxel
