#include "scanpage/qrimage.h"

#include <gtest/gtest.h>
#include <regex>

#include "devkit/qrreader.h"

namespace vesk::test {
namespace {

/// Draws an image of runs "M<x> <y>h<length>v1...".
std::string textOfImage(const std::string& svg) {
    std::smatch box;
    EXPECT_TRUE(std::regex_search(svg, box, std::regex(R"(viewBox="0 0 (\d+) \1")"))) << svg;
    const size_t size = std::stoul(box[1]);
    std::vector<std::vector<bool>> dark(size, std::vector<bool>(size));
    const std::regex run(R"(M(\d+) (\d+)h(\d+)v1)");
    for (std::sregex_iterator found(svg.begin(), svg.end(), run), end; found != end; ++found) {
        for (size_t i = 0; i < std::stoul((*found)[3]); ++i) {
            dark.at(std::stoul((*found)[2])).at(std::stoul((*found)[1]) + i) = true;
        }
    }
    return textOfCode(dark);
}

TEST(QrImage, ReadsAsItsTextAndHoldsItNowhereElse) {
    for (const char* text :
         {"https://ferno.example/qr/0123456789ab", "<script>1</script>", "A\"<&>\xC3\xA4"}) {
        const auto svg = backend::qrSvg(text);
        ASSERT_TRUE(svg) << text;
        EXPECT_EQ(textOfImage(*svg), text);
        EXPECT_EQ(svg->find(text), std::string::npos);
    }
}

TEST(QrImage, TextThatIsTooLongHasNone) {
    EXPECT_TRUE(backend::qrSvg(std::string(1000, 'x')));
    EXPECT_FALSE(backend::qrSvg(std::string(1001, 'x')));
    EXPECT_FALSE(backend::qrSvg(""));
}

} // namespace
} // namespace vesk::test
