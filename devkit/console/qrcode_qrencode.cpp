#include "qrcode.h"

#include <memory>
#include <qrencode.h>

namespace {

struct CodeCloser {
    void operator()(QRcode* code) const { QRcode_free(code); }
};

} // namespace

QrModules qrModules(const std::string& text) {
    const std::unique_ptr<QRcode, CodeCloser> code(
        QRcode_encodeString8bit(text.c_str(), 0, QR_ECLEVEL_L));
    if (!code) {
        return {};
    }
    const auto width = static_cast<size_t>(code->width);
    QrModules modules(width, std::vector<bool>(width));
    for (size_t i = 0; i < width * width; ++i) {
        // The lowest bit is the colour, the others say what the module is good for.
        modules[i / width][i % width] = (code->data[i] & 1) != 0;
    }
    return modules;
}
