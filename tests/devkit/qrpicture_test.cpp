#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_NO_STDIO
#define STBI_ONLY_PNG
#include <algorithm>
#include <stb_image.h>

#include "devkit/qrreader.h"
#include "devkit/scanpagetest.h"

namespace vesk::test {
namespace {

struct QrPicture : ScanPageTest {
    QrPicture() : ScanPageTest("Ferno", "ferno", "frlogin.dll") {}

    /// What a telephone reads from the picture at an address of the control port.
    static std::string scan(const std::string& address) {
        const std::string png = callControlPort(address, nullptr).body;
        int width = 0;
        int height = 0;
        stbi_uc* const pixels =
            stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(png.data()),
                                  static_cast<int>(png.size()), &width, &height, nullptr, 1);
        if (pixels == nullptr) {
            return "no PNG";
        }
        std::string text = textOfPixels(pixels, width, height);
        EXPECT_EQ(std::find(pixels, pixels + width * height, 0) - pixels, 20 * width + 20)
            << "the quiet zone has four modules of five pixels";
        stbi_image_free(pixels);
        return text;
    }
};

TEST_F(QrPicture, PlayerWhoScansTheGamesPictureIsIn) {
    startLogin();
    const std::string content = scan(observer.nextQrCode().ret.qrCodeUrl);
    Session session = player.sessions().back();
    EXPECT_EQ(session["qrcode"], content);
    EXPECT_EQ(player.press(session["id"], "confirm"), 200);
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
}

TEST_F(QrPicture, ReadsAsItsTextWhateverThatIs) {
    for (const std::string& text : {std::string("<script>1</script>"), std::string("A'<&>\xC3\xA4"),
                                    std::string(1000, 'x')}) {
        player.post("/sessions", R"({"channel":"KZ","qrcode":")" + text + "\"}");
        EXPECT_EQ(scan(player.url + "/qr/" + player.newest("id") + ".png"), text);
    }
}

} // namespace
} // namespace vesk::test
