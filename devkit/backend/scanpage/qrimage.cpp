#include <memory>
#include <qrencode.h>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb_image_write.h>

#include "scanpage/scanpage.h"

namespace vesk::backend {

namespace {

/// The quiet zone, in modules.
constexpr size_t kMargin = 4;
/// Pixels a module. Most codes come to about the 200 pixels that the SDK asks the KZ component for.
constexpr size_t kScale = 5;

struct FreeCode {
    void operator()(QRcode* code) const { QRcode_free(code); }
};

void append(void* png, void* data, int size) {
    static_cast<std::string*>(png)->append(static_cast<const char*>(data),
                                           static_cast<size_t>(size));
}

} // namespace

std::optional<std::string> qrPng(const std::string& text) {
    if (text.empty() || text.size() > kMaxQrText) {
        return std::nullopt;
    }
    const std::unique_ptr<QRcode, FreeCode> code(
        QRcode_encodeData(static_cast<int>(text.size()),
                          reinterpret_cast<const unsigned char*>(text.data()), 0, QR_ECLEVEL_M));
    if (!code) {
        return std::nullopt;
    }
    const auto width = static_cast<size_t>(code->width);
    const size_t begin = kMargin * kScale;
    const size_t end = begin + width * kScale;
    const size_t side = end + begin;
    std::string pixels(side * side, '\xFF');
    for (size_t y = begin; y < end; ++y) {
        for (size_t x = begin; x < end; ++x) {
            const size_t module = (y - begin) / kScale * width + (x - begin) / kScale;
            if ((code->data[module] & 1) != 0) {
                pixels[y * side + x] = '\0';
            }
        }
    }
    std::string png;
    const int columns = static_cast<int>(side);
    stbi_write_png_to_func(append, &png, columns, columns, 1, pixels.data(), columns);
    return png;
}

} // namespace vesk::backend
