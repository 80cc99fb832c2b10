#ifndef VESK_DEVKIT_BACKEND_SCANPAGE_SCANBUTTON_H
#define VESK_DEVKIT_BACKEND_SCANPAGE_SCANBUTTON_H

#include <array>

namespace vesk::backend {

/// What the player with the telephone can do.
enum class ScanButton { Scanned, Confirm, Deny, Expire, KickOut, Fail };

/// A button, and how the control API calls it.
struct NamedButton {
    ScanButton button;
    const char* name;
};

constexpr std::array<NamedButton, 6> kScanButtons = {{
    {ScanButton::Scanned, "scanned"},
    {ScanButton::Confirm, "confirm"},
    {ScanButton::Deny, "deny"},
    {ScanButton::Expire, "expire"},
    {ScanButton::KickOut, "kickout"},
    {ScanButton::Fail, "fail"},
}};

/// A button that was pressed.
struct ScanWord {
    ScanButton button = ScanButton::Scanned;
    /// For Fail: what the messenger reports, never 0.
    int code = 0;
};

} // namespace vesk::backend

#endif
