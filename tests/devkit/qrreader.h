#ifndef VESK_TESTS_DEVKIT_QRREADER_H
#define VESK_TESTS_DEVKIT_QRREADER_H

#include <string>
#include <vector>

namespace vesk::test {

/// The text of a QR code, as libzbar reads it; empty when it does not.
/// @param dark the modules row by row, the quiet zone among them
std::string textOfCode(const std::vector<std::vector<bool>>& dark);

} // namespace vesk::test

#endif
