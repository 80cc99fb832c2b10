#ifndef VESK_TESTS_CONSOLE_CODEPICTURE_H
#define VESK_TESTS_CONSOLE_CODEPICTURE_H

#include <string>

namespace vesk::test {

/// The text of a QR code that is drawn with half blocks. Throws when there is no such picture, or
/// when it has no quiet zone.
std::string textOfPicture(const std::string& output);

} // namespace vesk::test

#endif
