#ifndef VESK_DEVKIT_CONSOLE_QRCODE_H
#define VESK_DEVKIT_CONSOLE_QRCODE_H

#include <string>
#include <vector>

/// The modules of a QR code, row by row; true is dark. There is no quiet zone around them.
using QrModules = std::vector<std::vector<bool>>;

/// The code that holds @p text; empty when it is too long, or when this program was built without
/// libqrencode.
QrModules qrModules(const std::string& text);

#endif
