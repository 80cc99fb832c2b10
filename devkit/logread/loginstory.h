#ifndef VESK_DEVKIT_LOGREAD_LOGINSTORY_H
#define VESK_DEVKIT_LOGREAD_LOGINSTORY_H

#include <cstdint>
#include <string>
#include <vector>

#include "loginstep.h"

namespace vesk::logread {

/// Tells each login as a list of its steps with the milliseconds between them.
class LoginStory : public RecordConsumer {
public:
    void take(const LogRecord& record) override;
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
        bool delivered = false;
        bool dropped = false;
    };

    Login* find(const std::string& sequenceId);
    static void appendLogin(std::string& out, const Login& login);

    std::vector<Login> mLogins;
    std::string mRequestedChannel;
};

} // namespace vesk::logread

#endif
