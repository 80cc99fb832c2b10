// What the tools share, as far as no tool's own test tells the same.
#include <gmock/gmock.h>
#include <regex>
#include <sstream>

#include "common/inifile.h"
#include "common/resultcodes.h"
#include "common/system.h"
#include "common/text.h"
#include "support/files.h"

namespace vesk::test {
namespace {

using namespace devkit;
using ::testing::ElementsAre;
using ::testing::Pair;

TEST(Common, SettingsMayHoldAHashWhereOnlyLinesAreComments) {
    const std::string text = "#a=0\r a = x#1 \na=2\r\nempty=\n";
    const IniFile lines(text, IniFile::Comments::WholeLines);
    EXPECT_EQ(lines.value("a"), "x#1");
    EXPECT_EQ(lines.value("#a", "none"), "none");
    EXPECT_EQ(lines.value("empty", "none"), "");
    EXPECT_EQ(IniFile(text).value("a"), "x");
    EXPECT_EQ(IniFile(text).find("a")->line, 2u);
}

TEST(Common, JsonLineIsReadAsItWasWritten) {
    JsonLine line;
    // NOLINTNEXTLINE(misc-misleading-bidirectional)
    line.add("text", "a\"\\\n\x1b\xC2\x85\xE2\x80\xAE\xC3\xA4").add("number", -7).add("flag", true);
    EXPECT_EQ(line.text(), R"({"text":"a\"\\\n\u001b\u0085\u202e)"
                           "\xC3\xA4\",\"number\":-7,\"flag\":true}");
    EXPECT_THAT(*readJsonObject(line.text()),
                ElementsAre(Pair("flag", "true"), Pair("number", "-7"),
                            // NOLINTNEXTLINE(misc-misleading-bidirectional)
                            Pair("text", "a\"\\\n\x1b\xC2\x85\xE2\x80\xAE\xC3\xA4")));
    EXPECT_EQ(JsonLine().add("bad", "\xFF").text(), R"({"bad":"\ufffd"})");
    EXPECT_FALSE(readJsonObject("[1]") || readJsonObject("{\"a\":") || readJsonObject(""));
}

TEST(Common, OwnFolderIsTheProgramsOwn) {
    const auto file = ownFolder() / "common_test.txt";
    appendToFile(file, "one\n");
    appendToFile(file, "two");
    EXPECT_EQ(devkit::readFile(std::filesystem::path(environment("VESK_TEST_FOLDER")) /
                               "common_test.txt"),
              "one\ntwo");
    EXPECT_EQ(devkit::readFile(ownFolder()), "");
}

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
    std::istringstream text(test::readFile(environment("VESK_TEST_FOLDER") + "/codes.md"));
    for (std::string line; std::getline(text, line);) {
        if (std::regex_search(line, std::regex(R"(^\| (-?\d|other))"))) {
            // Without a code's name, and without what only a page has.
            line = std::regex_replace(line, std::regex(R"(^(\| \d+) `\w+`)"), "$1");
            page.push_back(std::regex_replace(line, std::regex("`"), ""));
        }
    }
    EXPECT_EQ(page, table);
}

} // namespace
} // namespace vesk::test
