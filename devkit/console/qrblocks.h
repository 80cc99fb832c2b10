#ifndef VESK_DEVKIT_CONSOLE_QRBLOCKS_H
#define VESK_DEVKIT_CONSOLE_QRBLOCKS_H

#include <string>

/// Downloads a picture, as a game does, within five seconds.
/// @param problem says why there is none
std::string fetchPicture(const std::string& address, std::string& problem);

/// The QR code on a picture, for a terminal, in UTF-8: two rows of modules a line, with the quiet
/// zone of four modules around it. Light modules are drawn, dark ones are the background. Empty
/// when the picture cannot be read, or has no upright QR code, dark on light.
/// @param picture a PNG or JPEG file
/// @param colours sets white and black, so that the code is right on any terminal. Without, it is
///        right on a dark one and inverted on a light one, which most scanners also read.
std::string qrBlocks(const std::string& picture, bool colours);

#endif
