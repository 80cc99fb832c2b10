#include "qrblocks.h"

namespace {

constexpr size_t kQuietZone = 4;
// From the fixed part of the palette: themes change the first sixteen colours.
constexpr const char* kWhiteOnBlack = "\x1b[38;5;231;48;5;16m";
constexpr const char* kReset = "\x1b[0m";

/// Whether a module is light; the quiet zone is, and so is everything beyond it.
bool isLight(const QrModules& modules, size_t row, size_t column) {
    const bool inside = row >= kQuietZone && column >= kQuietZone &&
                        row - kQuietZone < modules.size() && column - kQuietZone < modules.size();
    return !inside || !modules[row - kQuietZone][column - kQuietZone];
}

const char* block(bool upper, bool lower) {
    if (upper) {
        return lower ? "\u2588" : "\u2580";
    }
    return lower ? "\u2584" : " ";
}

} // namespace

std::string qrBlocks(const QrModules& modules, bool colours) {
    std::string text;
    const size_t size = modules.empty() ? 0 : modules.size() + 2 * kQuietZone;
    for (size_t row = 0; row < size; row += 2) {
        text += colours ? kWhiteOnBlack : "";
        for (size_t column = 0; column < size; ++column) {
            text += block(isLight(modules, row, column), isLight(modules, row + 1, column));
        }
        text += colours ? kReset : "";
        text += '\n';
    }
    return text;
}
