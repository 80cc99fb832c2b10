#include "qrblocks.h"

#include <gmock/gmock.h>
#include <sstream>

#include "devkit/qrreader.h"

namespace vesk::test {
namespace {

using Modules = std::vector<std::vector<bool>>;

/// The rows of dark modules of a picture, two rows a line of blocks.
Modules modulesOf(const std::string& picture) {
    Modules rows;
    std::istringstream stream(picture);
    for (std::string line; std::getline(stream, line);) {
        std::vector<bool> upper;
        std::vector<bool> lower;
        for (size_t i = 0; i < line.size();) {
            const std::string block = line[i] == ' ' ? " " : line.substr(i, 3);
            i += block.size();
            EXPECT_THAT(block, testing::AnyOf(" ", "▀", "▄", "█"));
            upper.push_back(block == " " || block == "▄");
            lower.push_back(block == " " || block == "▀");
        }
        rows.insert(rows.end(), {upper, lower});
    }
    return rows;
}

TEST(QrBlocks, ReadAsTheirText) {
    // 21, 25 and 29 modules a side: all are odd, so the last line has half a row.
    for (const char* text :
         {"x", "https://ferno.example/qr/1", "https://kz.example/qr/0123456789abcdef0"}) {
        const Modules rows = modulesOf(qrBlocks(text, false));
        EXPECT_EQ(textOfCode(rows), text);
        const std::vector<bool> light(rows.at(0).size());
        for (size_t y = 0; y < light.size(); ++y) {
            const bool edge = y < 4 || y >= light.size() - 4;
            EXPECT_THAT(
                std::vector<bool>(rows[y].begin(), edge ? rows[y].end() : rows[y].begin() + 4),
                testing::Each(false));
            EXPECT_THAT(std::vector<bool>(rows[y].end() - 4, rows[y].end()), testing::Each(false));
        }
    }
}

TEST(QrBlocks, EachLineSetsItsColoursAndTakesThemBack) {
    const std::string plain = qrBlocks("x", false);
    std::string coloured = qrBlocks("x", true);
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
    EXPECT_EQ(qrBlocks(std::string(5000, 'x'), false), "");
}

} // namespace
} // namespace vesk::test
