#ifndef VESK_DEVKIT_LOGREAD_LOGINSTEP_H
#define VESK_DEVKIT_LOGREAD_LOGINSTEP_H

#include <cstdint>
#include <optional>
#include <string>

#include "logrecord.h"

namespace vesk::logread {

/// A result's codes, as docs/codes.md has them.
struct ResultCodes {
    int64_t retCode;
    int64_t thirdCode;
};

/// A record that tells of a login.
struct LoginStep {
    enum class Kind {
        begin,     ///< a login starts
        middle,    ///< it goes on
        answer,    ///< the backend has answered, or nobody has in its place
        failure,   ///< a component or the SDK says what went wrong
        transport, ///< no step of its own: says why the answer that follows is none
        unusable,  ///< no step of its own: the answer that came before is no JSON
        deliver,   ///< the game is told
        drop       ///< the game is not told after all
    };
    Kind kind = Kind::middle;
    std::string words;
    /// The login's sequence id. Empty: a component's event, which does not know whose it is.
    std::string sequenceId;
    /// Empty where the record does not name it.
    std::string channel;
    /// What the game is told when nothing else happens.
    std::optional<ResultCodes> codes;
    /// What the backend says in its own words.
    std::string message;
    /// What to do when the login ends here, where the codes cannot know.
    std::string_view remedy;
};

/// The step that the record stands for, if it does.
std::optional<LoginStep> readLoginStep(const LogRecord& record);

/// The channel of a record that a login of the game's begins with, before it has an id.
std::optional<std::string> readRequestedChannel(const LogRecord& record);

} // namespace vesk::logread

#endif
