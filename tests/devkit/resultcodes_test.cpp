#include "common/resultcodes.h"

#include <gmock/gmock.h>
#include <regex>
#include <sstream>

#include "support/files.h"

namespace vesk::test {
namespace {

using devkit::Advice;
using devkit::outsideMeaning;

/// A row as docs/codes.md has it.
std::string rowOfPage(const Advice& row) {
    std::ostringstream out;
    if (row.IsForOthers()) {
        out << "| other";
    } else {
        out << "| " << row.first;
    }
    if (row.last != row.first && !row.IsForOthers()) {
        out << " to " << row.last;
    }
    out << " | " << row.CauseName() << " | " << row.meaning << " | " << row.remedy
        << (*row.remedy == '\0' ? "| " : " | ");
    if (row.retryAfter > 0) {
        out << "after " << row.retryAfter / 1000 << " s |";
    } else {
        out << (row.retryAfter == 0 ? "yes |" : "no |");
    }
    return out.str();
}

TEST(ResultCodes, ThePageAndTheTableHaveTheSameRows) {
    std::vector<std::string> table, page;
    const auto [begin, end] = Advice::Table();
    std::transform(begin, end, std::back_inserter(table), rowOfPage);
    std::istringstream text(readFile(environment("VESK_TEST_FOLDER") + "/codes.md"));
    for (std::string line; std::getline(text, line);) {
        if (std::regex_search(line, std::regex(R"(^\| (-?\d|other))"))) {
            // Without a code's name, and without what only a page has.
            line = std::regex_replace(line, std::regex(R"(^(\| \d+) `\w+`)"), "$1");
            page.push_back(std::regex_replace(line, std::regex("`"), ""));
        }
    }
    EXPECT_EQ(page, table);
}

TEST(ResultCodes, OutsideCodeSaysWhoAnswered) {
    const struct {
        int64_t retCode, thirdCode;
        const char* begin;
    } rows[] = {
        {4, 4, "the SDK reports 4, the request waited"},
        {4, 77, "libcurl reports 77, cacert.pem"},
        {24, 94, "libcurl reports 94, the transport"},
        {4, 302, "the answer has HTTP status 302, what came is no answer"},
        {4, 833, "the SDK reports 833"},
        {5, 0, "the backend answered 0, the answer is empty"},
        {5, 4009, "the backend answered 4009"},
    };
    for (const auto& row : rows) {
        EXPECT_THAT(outsideMeaning(row.retCode, row.thirdCode), testing::StartsWith(row.begin));
    }
    for (const int64_t retCode : {0, 5, 20, 9999}) {
        EXPECT_EQ(outsideMeaning(retCode, retCode == 5 ? Advice::kNobody : 0), "");
    }
}

} // namespace
} // namespace vesk::test
