#ifndef VESK_LOGIN_VESKGUARDED_H
#define VESK_LOGIN_VESKGUARDED_H

#include "foundation/log/vesklogger.h"
#include "module/veskmodule.h"

namespace Braxel {
namespace VESK {

/// Runs the body of an exported operation: nothing may be thrown into the game, and the library
/// stays until it has returned.
/// @param method the operation's name for the log, fully qualified
template <typename Body>
void Guarded(const char* method, const Body& body) noexcept {
    const VESKModule::Use use;
    try {
        body();
    } catch (...) {
        VESK_LOG_AT(kLogError, method, "exception inside the SDK, the operation ends here");
    }
}

/// Whether UnInstall was called; without a word in the log.
bool HasEnded();

/// Whether UnInstall was called, after which no operation does anything. Then the log says so,
/// under the name @p method.
bool HasEnded(const char* method);

/// Runs the body of the operation @p method, unless the SDK has ended.
template <typename Body>
void UnlessEnded(const char* method, const Body& body) noexcept {
    Guarded(method, [&] {
        if (!HasEnded(method)) {
            body();
        }
    });
}

} // namespace VESK
} // namespace Braxel

#endif
