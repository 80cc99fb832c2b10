#ifndef VESK_DEVKIT_LOGREAD_LOGINSTORY_H
#define VESK_DEVKIT_LOGREAD_LOGINSTORY_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

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
        request,   ///< no step of its own: names the channel of the login that begins next
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

/// Tells of each login what its steps were, how it ended, why, and what to do about it.
class LoginStory {
public:
    void take(const LogRecord& record);
    /// One paragraph a login, in the order in which they began; with an id that login alone.
    std::string text(const std::string& sequenceId = "") const;

private:
    struct Step {
        int64_t at;
        std::string words;
    };
    struct Login {
        std::string sequenceId;
        std::string channel;
        std::string time;
        std::vector<Step> steps;
        /// What the game is told, or would have been.
        std::optional<ResultCodes> codes;
        int64_t transport = 0;
        std::string failure; ///< in the words of a component
        std::string message; ///< in the words of the backend
        std::string remedy;
        bool delivered = false;
        bool dropped = false;
    };

    Login* find(const std::string& sequenceId);
    static void learn(Login& login, LoginStep& step);
    static void appendLogin(std::string& out, const Login& login);
    static void appendResult(std::string& out, const Login& login);

    std::vector<Login> mLogins;
    std::string mRequestedChannel;
};

} // namespace vesk::logread

#endif
