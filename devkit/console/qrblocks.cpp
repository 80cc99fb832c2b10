#include "qrblocks.h"

#include <memory>
#include <qrencode.h>

namespace {

constexpr int kQuietZone = 4;
// From the fixed part of the palette: themes change the first sixteen colours.
constexpr const char* kWhiteOnBlack = "\x1b[38;5;231;48;5;16m";
constexpr const char* kReset = "\x1b[0m";

struct CodeCloser {
    void operator()(QRcode* code) const { QRcode_free(code); }
};

/// Whether a module is light; the quiet zone is, and so is everything beyond it.
bool isLight(const QRcode& code, int row, int column) {
    const bool inside = row >= 0 && column >= 0 && row < code.width && column < code.width;
    // The lowest bit is the colour, the others say what the module is good for.
    return !inside || (code.data[row * code.width + column] & 1) == 0;
}

const char* block(bool upper, bool lower) {
    if (upper) {
        return lower ? "\u2588" : "\u2580";
    }
    return lower ? "\u2584" : " ";
}

} // namespace

std::string qrBlocks(const std::string& text, bool colours) {
    const std::unique_ptr<QRcode, CodeCloser> code(
        QRcode_encodeString8bit(text.c_str(), 0, QR_ECLEVEL_L));
    std::string blocks;
    const int end = code ? code->width + kQuietZone : -kQuietZone;
    for (int row = -kQuietZone; row < end; row += 2) {
        blocks += colours ? kWhiteOnBlack : "";
        for (int column = -kQuietZone; column < end; ++column) {
            blocks += block(isLight(*code, row, column), isLight(*code, row + 1, column));
        }
        blocks += colours ? kReset : "";
        blocks += '\n';
    }
    return blocks;
}
