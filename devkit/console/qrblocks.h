#ifndef VESK_DEVKIT_CONSOLE_QRBLOCKS_H
#define VESK_DEVKIT_CONSOLE_QRBLOCKS_H

#include <string>

/// The QR code that holds @p text, for a terminal, in UTF-8: two rows of modules a line, with the
/// quiet zone of four modules around it. Light modules are drawn, dark ones are the background.
/// Empty when the text is too long for a code.
/// @param colours sets white and black, so that the code is right on any terminal. Without, it is
///        right on a dark one and inverted on a light one, which most scanners also read.
std::string qrBlocks(const std::string& text, bool colours);

#endif
