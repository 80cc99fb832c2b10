#include "logfile.h"

#include <stdexcept>

namespace vesk::logread {

std::ifstream openLog(const std::filesystem::path& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        throw std::runtime_error(path.string() + " is no plain file");
    }
    return std::ifstream(path, std::ios::binary);
}

} // namespace vesk::logread
