#ifndef VESK_FOUNDATION_TASK_VESKREFRESHTOKENTASK_H
#define VESK_FOUNDATION_TASK_VESKREFRESHTOKENTASK_H

#include "foundation/task/vesktask.h"

namespace Braxel {
namespace VESK {

struct InnerLoginRet;

/// Asks the channel for a fresh token shortly before the stored one expires.
class VESKRefreshTokenTask : public VESKTask {
public:
    /// What the task needs of the login, which it does not know.
    struct Login {
        /// The login that is held. @return whether one is
        bool (*read)(InnerLoginRet& out);
        /// Asks the channel of @p ret for a fresh token.
        void (*refresh)(const InnerLoginRet& ret);
    };

    static constexpr const char* kTaskName = "refreshTokenTask";

    explicit VESKRefreshTokenTask(const Login& login) : mLogin(login) {}

    enum class Decision { Invalid, NotYet, Refresh };

    /// What to do with the stored login @p ret at the time @p now, in Unix seconds.
    static Decision Decide(const InnerLoginRet& ret, int64_t now);

    void DoTask() override;
    std::string GetTaskName() override;
    uint32_t GetInterval() override;

private:
    const Login mLogin;
};

} // namespace VESK
} // namespace Braxel

#endif
