#include "platformimpl/foundation/file/veskfileutils.h"

#include <cstdio>
#include <memory>

#include "foundation/log/vesklogger.h"
#include "platformimpl/foundation/file/vesklibrarydirectory.h"
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

std::string ReadAll(std::FILE* file) {
    std::string content;
    char piece[1024];
    // Deliberate: a zero byte in the file cuts the rest of its piece.
    while (std::fgets(piece, sizeof piece, file) != nullptr) {
        content.append(piece);
    }
    return content;
}

} // namespace

std::string VESKFileUtils::GetLibraryDirectory() const {
    return LibraryDirectory();
}

std::string VESKFileUtils::ReadFile(const std::string& name) const {
    const std::string directory = LibraryDirectory();
    const std::string path = directory + name;
    VESK_LOG_INFO("VESKFileUtils::ReadFile", "Read file:%s", path.c_str());
    const FilePtr file = Open(directory, path, "r");
    if (!file) {
        VESK_LOG_ERROR("VESKFileUtils::ReadFile", "Read file error! file path:%s", path.c_str());
        return {};
    }
    std::string content = ReadAll(file.get());
    VESK_LOG_INFO("VESKFileUtils::ReadFile", "Read file success! Content:\n%s", content.c_str());
    return content;
}

std::string VESKFileUtils::ReadConfigFile(const std::string& name) const {
    const std::string directory = LibraryDirectory();
    const std::string path = directory + name;
    VESK_LOG_INFO("VESKFileUtils::ReadConfigFile", "Read config file:%s", path.c_str());
    const FilePtr file = Open(directory, path, "r");
    if (!file) {
        VESK_LOG_ERROR("VESKFileUtils::ReadConfigFile", "Read config file error! file path:%s",
                       path.c_str());
        return {};
    }
    std::string content = ReadAll(file.get());
    VESK_LOG_INFO("VESKFileUtils::ReadConfigFile", "Read config file success! Content:\n%s",
                  content.c_str());
    return content;
}

bool VESKFileUtils::WriteFile(const std::string& name, const std::string& data) const {
    const std::string directory = LibraryDirectory();
    const std::string path = directory + name;
    VESK_LOG_INFO("VESKFileUtils::WriteFile", "Write to file:%s with data:%s", path.c_str(),
                  data.c_str());
    FilePtr file = Open(directory, path, "w");
    if (!file) {
        VESK_LOG_ERROR("VESKFileUtils::WriteFile", "Write file error! file path:%s", path.c_str());
        return false;
    }
    const bool put = std::fputs(data.c_str(), file.get()) >= 0;
    const bool closed = std::fclose(file.release()) == 0;
    if (!put || !closed) {
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
