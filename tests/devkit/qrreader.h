#ifndef VESK_TESTS_DEVKIT_QRREADER_H
#define VESK_TESTS_DEVKIT_QRREADER_H

#include <string>
#include <vector>
#include <zbar.h>

namespace vesk::test {

/// The text of a QR code, as libzbar reads it; empty when it does not.
/// @param dark the modules row by row, the quiet zone among them
inline std::string textOfCode(const std::vector<std::vector<bool>>& dark) {
    constexpr size_t kScale = 4;
    const size_t width = dark.at(0).size() * kScale;
    const size_t height = dark.size() * kScale;
    std::string pixels;
    for (size_t at = 0; at < width * height; ++at) {
        pixels += dark[at / width / kScale].at(at % width / kScale) ? '\0' : '\xFF';
    }
    zbar::Image image(static_cast<unsigned>(width), static_cast<unsigned>(height), "Y800",
                      pixels.data(), pixels.size());
    zbar::ImageScanner scanner;
    scanner.set_config(zbar::ZBAR_QRCODE, zbar::ZBAR_CFG_BINARY, 1); // no guess at the encoding
    return scanner.scan(image) == 1 ? image.symbol_begin()->get_data() : "";
}

} // namespace vesk::test

#endif
