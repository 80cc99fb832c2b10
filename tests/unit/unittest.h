#ifndef VESK_TESTS_UNIT_UNITTEST_H
#define VESK_TESTS_UNIT_UNITTEST_H

#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

#include "support/files.h"

namespace Braxel::VESK {}

namespace vesk::test {

using namespace Braxel::VESK;
using namespace ::testing;

/// The rows of a table of cases.
template <typename... Columns>
using Rows = std::vector<std::tuple<Columns...>>;

/// The product's classes in a process of the case's own, with an empty folder as the library's.
class UnitTest : public Test {
protected:
    UnitTest();

    /// Files of the folder, byte by byte.
    void write(const std::string& name, const std::string& bytes) const {
        writeFile(folder / name, bytes);
    }
    std::string read(const std::string& name) const { return readFile(folder / name); }

    /// The lines of the SDK's log so far, and how many of them hold @p text.
    std::vector<std::string> logLines() const;
    size_t logged(const std::string& text) const {
        return countSdkLogLines(folder / "veskrecord.log", text);
    }
    /// The messages of the lines that have come since the last call.
    std::vector<std::string> newMessages();

    const std::filesystem::path folder;

private:
    size_t mSeen = 0;
};

/// Unix seconds.
int64_t now();

/// Runs @p work(0) to @p work(7) to their ends, on threads of their own that start together.
void onEightThreads(const std::function<void(int)>& work);

} // namespace vesk::test

#endif
