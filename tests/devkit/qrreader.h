#ifndef VESK_TESTS_DEVKIT_QRREADER_H
#define VESK_TESTS_DEVKIT_QRREADER_H

#include <string>
#include <vector>

namespace vesk::test {

/// Reads an undamaged QR code of up to 29 modules a side that holds bytes: so small a code has one
/// block, and a clean image needs no error correction.
class QrReader {
public:
    /// Reads an image of runs "M<x> <y>h<length>v1...".
    explicit QrReader(const std::string& svg);

    size_t size() const { return mDark.size(); }
    std::string text() const;

private:
    bool isDark(size_t row, size_t column) const { return mDark[row][column]; }
    bool isData(size_t row, size_t column) const;
    bool isMasked(unsigned mask, size_t row, size_t column) const;
    std::vector<bool> bits() const;

    std::vector<std::vector<bool>> mDark;
};

} // namespace vesk::test

#endif
