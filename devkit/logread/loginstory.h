#ifndef VESK_DEVKIT_LOGREAD_LOGINSTORY_H
#define VESK_DEVKIT_LOGREAD_LOGINSTORY_H

#include <cstdint>
#include <string>
#include <vector>

#include "loginstep.h"

namespace vesk::logread {

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
