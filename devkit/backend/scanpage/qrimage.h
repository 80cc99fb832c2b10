#ifndef VESK_DEVKIT_BACKEND_SCANPAGE_QRIMAGE_H
#define VESK_DEVKIT_BACKEND_SCANPAGE_QRIMAGE_H

#include <optional>
#include <string>

namespace vesk::backend {

/// The longest text that is drawn.
constexpr size_t kMaxQrText = 1000;

/// The text as a QR code, a PNG file; nothing when the text does not fit into one. The picture
/// brings its quiet zone along, so that it can be scanned from a dark page.
std::optional<std::string> qrPng(const std::string& text);

} // namespace vesk::backend

#endif
