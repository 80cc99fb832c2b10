#include <windows.h>
#include <gtest/gtest.h>

#include "support/system.h"

namespace vesk::test {
namespace {

/// Wine 8 may crash in a thread that ends at the moment in which its process does: once in a few
/// hundred cases that had passed, and in a program that does nothing else as well. So those threads
/// that are about to end come first. Others, which wait for something, stay.
class ProgramEnd : public ::testing::Environment {
    void TearDown() override {
        constexpr int kQuiet = 10;
        constexpr int kPatience = 200;
        size_t threads = countThreads();
        for (int quiet = 0, looks = 0; threads > 1 && quiet < kQuiet && looks < kPatience;
             ++looks) {
            Sleep(10);
            const size_t now = countThreads();
            quiet = now == threads ? quiet + 1 : 0;
            threads = now;
        }
    }
};

const ::testing::Environment* const kProgramEnd =
    ::testing::AddGlobalTestEnvironment(new ProgramEnd);

} // namespace
} // namespace vesk::test
