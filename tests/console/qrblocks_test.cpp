#include "qrblocks.h"

#include <gmock/gmock.h>

#include "console/codepicture.h"

namespace vesk::test {
namespace {

TEST(QrBlocks, ReadAsTheirText) {
    // 21, 25 and 29 modules a side: all are odd, so the last line has half a row.
    for (const char* text :
         {"x", "https://ferno.example/qr/1", "https://kz.example/qr/0123456789abcdef0"}) {
        EXPECT_EQ(textOfPicture(qrBlocks(qrModules(text), false)), text);
    }
}

TEST(QrBlocks, EachLineSetsItsColoursAndTakesThemBack) {
    const std::string plain = qrBlocks(qrModules("x"), false);
    std::string coloured = qrBlocks(qrModules("x"), true);
    const std::string begin = "\x1b[38;5;231;48;5;16m";
    const std::string end = "\x1b[0m\n";
    for (size_t at = 0; at < coloured.size(); at = coloured.find('\n', at) + 1) {
        ASSERT_EQ(coloured.compare(at, begin.size(), begin), 0);
        coloured.erase(at, begin.size());
        const size_t reset = coloured.find(end, at);
        ASSERT_NE(reset, std::string::npos);
        coloured.erase(reset, end.size() - 1);
    }
    EXPECT_EQ(coloured, plain);
}

TEST(QrBlocks, TextThatIsTooLongHasNoPicture) {
    EXPECT_EQ(qrBlocks(qrModules(std::string(5000, 'x')), false), "");
}

} // namespace
} // namespace vesk::test
