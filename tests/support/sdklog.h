#ifndef VESK_TESTS_SUPPORT_SDKLOG_H
#define VESK_TESTS_SUPPORT_SDKLOG_H

#include <filesystem>
#include <string>
#include <vector>

namespace vesk::test {

/// The readable lines of a veskrecord.log as it is now, oldest first, without line ends.
std::vector<std::string> readSdkLog(const std::filesystem::path& file);

} // namespace vesk::test

#endif
