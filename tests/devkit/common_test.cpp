// What the tools share, as far as no tool's own test tells the same.
#include <cstdlib>
#include <gmock/gmock.h>

#include "common/file.h"
#include "common/inifile.h"
#include "common/jsonline.h"
#include "common/ownmodule.h"

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
    EXPECT_EQ(readFile(std::filesystem::path(std::getenv("VESK_TEST_FOLDER")) / "common_test.txt"),
              "one\ntwo");
    EXPECT_EQ(readFile(ownFolder()), "");
}

} // namespace
} // namespace vesk::test
