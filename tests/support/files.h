#ifndef VESK_TESTS_SUPPORT_FILES_H
#define VESK_TESTS_SUPPORT_FILES_H

#include <filesystem>
#include <string>
#include <vector>

namespace vesk::test {

/// The file's bytes; empty when there is none.
std::string readFile(const std::filesystem::path& file);

/// The readable lines of a veskrecord.log as it is now, oldest first, without line ends.
std::vector<std::string> readSdkLog(const std::filesystem::path& file);

/// How many of them hold @p text.
size_t countSdkLogLines(const std::filesystem::path& file, const std::string& text);

/// Replaces the file.
void writeFile(const std::filesystem::path& file, const std::string& bytes);

/// An environment variable that the runner script has set. Throws when it is not there.
std::string environment(const char* name);

/// A program that has run to its end.
struct ProgramRun {
    int status = -1;
    std::string out;
    std::string err;
};

/// Runs a program that lies in the folder. @p before stands before it in the command line.
ProgramRun runProgram(const std::filesystem::path& folder, const std::string& name,
                      const std::string& arguments, const std::string& before = "");

} // namespace vesk::test

#endif
