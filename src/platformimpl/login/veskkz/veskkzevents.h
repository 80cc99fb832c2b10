#ifndef VESK_PLATFORMIMPL_LOGIN_VESKKZ_VESKKZEVENTS_H
#define VESK_PLATFORMIMPL_LOGIN_VESKKZ_VESKKZEVENTS_H

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "platformimpl/login/veskkz/kzcomponent.h"
#include "platformimpl/login/vesknotify.h"

namespace Braxel {
namespace VESK {

/// Decodes one event of the KZ component for the wrapper: logs it and tells the channel.
class VESKKZEvents {
public:
    /// @param notify and @param component may be null.
    VESKKZEvents(VESKChannelNotify* notify, std::shared_ptr<KZComponent> component)
        : mNotify(notify), mComponent(std::move(component)) {}

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
    const std::shared_ptr<KZComponent> mComponent;
};

} // namespace VESK
} // namespace Braxel

#endif
