#ifndef VESK_TESTS_SUPPORT_PROGRAMRUN_H
#define VESK_TESTS_SUPPORT_PROGRAMRUN_H

#include <filesystem>
#include <string>

namespace vesk::test {

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
