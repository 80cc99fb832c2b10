#include "devkit/qrreader.h"

#include <regex>
#include <stdexcept>

namespace vesk::test {
namespace {

constexpr size_t kMargin = 4;

size_t numberAt(const std::vector<bool>& bits, size_t at, size_t count) {
    size_t number = 0;
    for (size_t i = at; i < at + count; ++i) {
        number = number * 2 + (bits.at(i) ? 1 : 0);
    }
    return number;
}

} // namespace

QrReader::QrReader(const std::string& svg) {
    std::smatch box;
    if (!std::regex_search(svg, box, std::regex(R"(viewBox="0 0 (\d+) \1")"))) {
        throw std::runtime_error("no square image");
    }
    const size_t size = std::stoul(box[1]) - 2 * kMargin;
    mDark.assign(size, std::vector<bool>(size));
    const std::regex run(R"(M(\d+) (\d+)h(\d+)v1)");
    for (std::sregex_iterator found(svg.begin(), svg.end(), run), end; found != end; ++found) {
        for (size_t i = 0; i < std::stoul((*found)[3]); ++i) {
            mDark.at(std::stoul((*found)[2]) - kMargin).at(std::stoul((*found)[1]) - kMargin + i) =
                true;
        }
    }
}

std::string QrReader::text() const {
    const std::vector<bool> all = bits();
    if (numberAt(all, 0, 4) != 4) {
        throw std::runtime_error("not in byte mode");
    }
    std::string text;
    for (size_t i = 0; i < numberAt(all, 4, 8); ++i) {
        text += static_cast<char>(numberAt(all, 12 + 8 * i, 8));
    }
    return text;
}

bool QrReader::isData(size_t row, size_t column) const {
    const size_t far = size() - 8;
    const bool finder =
        (row < 9 && column < 9) || (row < 9 && column >= far) || (row >= far && column < 9);
    // One alignment pattern from 25 modules on, its centre 6 modules off either edge.
    const size_t begin = size() - 9;
    const bool alignment =
        size() > 21 && row >= begin && row < begin + 5 && column >= begin && column < begin + 5;
    return !finder && !alignment && row != 6 && column != 6;
}

bool QrReader::isMasked(unsigned mask, size_t i, size_t j) const {
    switch (mask) {
    case 0:
        return (i + j) % 2 == 0;
    case 1:
        return i % 2 == 0;
    case 2:
        return j % 3 == 0;
    case 3:
        return (i + j) % 3 == 0;
    case 4:
        return (i / 2 + j / 3) % 2 == 0;
    case 5:
        return i * j % 2 + i * j % 3 == 0;
    case 6:
        return (i * j % 2 + i * j % 3) % 2 == 0;
    default:
        return ((i + j) % 2 + i * j % 3) % 2 == 0;
    }
}

std::vector<bool> QrReader::bits() const {
    // The mask's number stands beside the upper left corner, itself masked with 101.
    unsigned mask = 0;
    for (size_t column = 2; column < 5; ++column) {
        mask = mask * 2 + (isDark(8, column) ? 1 : 0);
    }
    mask ^= 5;
    std::vector<bool> found;
    bool up = true;
    for (size_t pair = size() - 1; pair > 0 && pair < size(); pair -= pair == 8 ? 3 : 2) {
        for (size_t step = 0; step < size(); ++step) {
            const size_t row = up ? size() - 1 - step : step;
            for (const size_t column : {pair, pair - 1}) {
                if (isData(row, column)) {
                    found.push_back(isDark(row, column) != isMasked(mask, row, column));
                }
            }
        }
        up = !up;
    }
    return found;
}

} // namespace vesk::test
