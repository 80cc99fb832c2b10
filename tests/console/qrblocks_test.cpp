#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_NO_STDIO
#define STBI_ONLY_PNG
#include "qrblocks.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <regex>
#include <sstream>
#include <stb_image.h>

#include "devkit/qrreader.h"
#include "scanpage/scanpage.h"

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

std::string textOfModules(const Modules& rows) {
    constexpr size_t kScale = 4;
    const size_t width = rows.at(0).size() * kScale;
    const size_t height = rows.size() * kScale;
    std::string pixels;
    for (size_t at = 0; at < width * height; ++at) {
        pixels += rows[at / width / kScale].at(at % width / kScale) ? '\0' : '\xFF';
    }
    return textOfPixels(pixels.data(), static_cast<int>(width), static_cast<int>(height));
}

/// What a telephone reads from a picture.
std::string scan(const std::string& png) {
    int width = 0;
    int height = 0;
    const std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> pixels(
        stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(png.data()),
                              static_cast<int>(png.size()), &width, &height, nullptr, 1),
        &stbi_image_free);
    const stbi_uc* const begin = pixels.get();
    EXPECT_EQ(std::find(begin, begin + (pixels ? width * height : 0), 0) - begin, 20 * width + 20)
        << "the quiet zone has four modules of five pixels";
    return pixels ? textOfPixels(begin, width, height) : "no PNG";
}

TEST(QrBlocks, ReadAsThePictureDoesAndThatAsItsText) {
    // 21, 29 and 109 modules a side: all are odd, so the last line has half a row.
    for (const std::string& text :
         {std::string("x"), std::string("<script>'&\xC3\xA4</script>"), std::string(800, 'x')}) {
        const std::string picture = *backend::qrPng(text);
        EXPECT_EQ(scan(picture), text);
        const Modules rows = modulesOf(qrBlocks(picture, false));
        EXPECT_EQ(textOfModules(rows), text);
        const size_t end = rows.at(0).size() - 1;
        for (size_t y = 0; y <= end; ++y) {
            for (size_t x = 0; x <= end; ++x) {
                EXPECT_FALSE(std::min({x, y, end - x, end - y}) < 4 && rows.at(y).at(x));
            }
        }
    }
}

TEST(QrBlocks, EachLineSetsItsColoursAndTakesThemBack) {
    const std::string picture = *backend::qrPng("x");
    EXPECT_EQ(qrBlocks(picture, true),
              std::regex_replace(qrBlocks(picture, false), std::regex("([^\n]+)\n"),
                                 "\x1b[38;5;231;48;5;16m$1\x1b[0m\n"));
}

TEST(QrBlocks, WhatIsNoPictureOfACodeIsNotDrawn) {
    std::string damaged = *backend::qrPng("x");
    damaged.resize(damaged.size() / 2);
    for (const std::string& picture :
         {std::string(), std::string("<html>"), damaged, "P5 4 4 255 " + std::string(16, '\0')}) {
        EXPECT_EQ(qrBlocks(picture, false), "");
    }
}

} // namespace
} // namespace vesk::test
