#ifndef VESK_DEVKIT_LOGREAD_LOGINSTEP_H
#define VESK_DEVKIT_LOGREAD_LOGINSTEP_H

#include <optional>
#include <string>

#include "logrecord.h"

namespace vesk::logread {

/// A step of a login.
struct LoginStep {
    enum class Kind {
        begin,   ///< a login starts
        middle,  ///< it goes on
        deliver, ///< the game is told
        drop     ///< the game is not told after all
    };
    Kind kind = Kind::middle;
    std::string words;
    /// The login's sequence id. Empty: a component's event, which does not know whose it is.
    std::string sequenceId;
    /// Empty where the record does not name it.
    std::string channel;
};

/// The step that the record stands for, if it does.
std::optional<LoginStep> readLoginStep(const LogRecord& record);

/// The channel of a record that a login of the game's begins with, before it has an id.
std::optional<std::string> readRequestedChannel(const LogRecord& record);

} // namespace vesk::logread

#endif
