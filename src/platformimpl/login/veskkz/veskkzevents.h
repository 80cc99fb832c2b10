#ifndef VESK_PLATFORMIMPL_LOGIN_VESKKZ_VESKKZEVENTS_H
#define VESK_PLATFORMIMPL_LOGIN_VESKKZ_VESKKZEVENTS_H

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "platformimpl/login/messenger/vesknotify.h"
#include "platformimpl/login/veskkz/kzresult.h"

namespace Braxel {
namespace VESK {

/// Decodes one event of the KZ component for the wrapper: logs it and tells the channel.
class VESKKZEvents {
public:
    /// Asks the component to log the player in that it remembers; false when it cannot be asked.
    using LoginLocalUser = std::function<bool(const std::string& openid)>;

    /// @param notify may be null.
    VESKKZEvents(VESKChannelNotify* notify, LoginLocalUser loginLocalUser)
        : mNotify(notify), mLoginLocalUser(std::move(loginLocalUser)) {}

    void Handle(int32_t notifyType, const KZResult* result);

private:
    void Dispatch(int32_t notifyType, const KZResult& result);

    void OnUnknown(const KZResult* result);
    void OnQrCodeInfo(const KZResult& result);
    void OnQrCodeLogin(const KZResult& result);
    void OnQrCodeLoginFailed(const KZResult& result, int32_t resultCode);
    void OnLocalLoginList(const KZResult& result);
    void OnLocalLoginUser(const KZResult& result);
    void OnLoginRecord(const KZResult& result);

    void ReportLogin(const KZResult& result);
    void ReportLoginFailure(const std::string& message);
    void ReportLoginRecordFailure(const std::string& message);

    VESKChannelNotify* const mNotify;
    const LoginLocalUser mLoginLocalUser;
};

} // namespace VESK
} // namespace Braxel

#endif
