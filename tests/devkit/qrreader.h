#ifndef VESK_TESTS_DEVKIT_QRREADER_H
#define VESK_TESTS_DEVKIT_QRREADER_H

#include <string>
#include <zbar.h>

namespace vesk::test {

/// The text of a QR code, as libzbar reads it; empty when it does not.
/// @param pixels row by row, 0 is black
inline std::string textOfPixels(const void* pixels, int width, int height) {
    const auto columns = static_cast<unsigned>(width);
    const auto rows = static_cast<unsigned>(height);
    zbar::Image image(columns, rows, "Y800", pixels, size_t{columns} * rows);
    zbar::ImageScanner scanner;
    scanner.set_config(zbar::ZBAR_QRCODE, zbar::ZBAR_CFG_BINARY, 1); // no guess at the encoding
    return scanner.scan(image) == 1 ? image.symbol_begin()->get_data() : "";
}

} // namespace vesk::test

#endif
