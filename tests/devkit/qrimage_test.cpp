#include "qrimage.h"

#include <gtest/gtest.h>

#include "devkit/qrreader.h"

namespace vesk::test {
namespace {

TEST(QrImage, ReadsAsItsText) {
    for (const char* text : {"https://ferno.example/qr/0123456789ab", "x", "A\"<&>\xC3\xA4"}) {
        const auto svg = backend::qrSvg(text);
        ASSERT_TRUE(svg) << text;
        EXPECT_EQ(QrReader(*svg).text(), text);
    }
}

TEST(QrImage, TextNeverStandsInTheImage) {
    const auto svg = backend::qrSvg("<script>1</script>");
    ASSERT_TRUE(svg);
    EXPECT_EQ(svg->find("script"), std::string::npos);
    EXPECT_EQ(svg->find(R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox=)"), 0u);
}

TEST(QrImage, TextThatIsTooLongHasNone) {
    EXPECT_TRUE(backend::qrSvg(std::string(1000, 'x')));
    EXPECT_FALSE(backend::qrSvg(std::string(1001, 'x')));
    EXPECT_FALSE(backend::qrSvg(""));
}

} // namespace
} // namespace vesk::test
