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

} // namespace VESK
} // namespace Braxel

#endif
