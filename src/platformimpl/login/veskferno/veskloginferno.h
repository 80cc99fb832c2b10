#ifndef VESK_PLATFORMIMPL_LOGIN_VESKFERNO_VESKLOGINFERNO_H
#define VESK_PLATFORMIMPL_LOGIN_VESKFERNO_VESKLOGINFERNO_H

#include <atomic>
#include <cstdint>
#include <string>

#include "module/vesksingleton.h"
#include "platformimpl/login/messenger/veskmessengeranswers.h"
#include "platformimpl/login/messenger/vesknotify.h"

namespace Braxel {
namespace VESK {

/// The Ferno channel: login by QR code, token refresh and logout. Answers come later, on the
/// component's threads, under the sequence id of the last login.
class VESKLoginFerno : public VESKChannelNotify {
public:
    static VESKLoginFerno* GetInstance() { return VESKSingleton<VESKLoginFerno>::GetInstance(); }

    bool IsInitialised() const { return mInitialised; }
    void InitializeOpenSDK();

    /// @param order of the login among all; one that is older than the last is dropped.
    /// @return false when nobody will answer.
    bool QrCodeLogin(std::string seqID, std::string preCode, uint64_t order);
    void GetLoginRecord();
    void Logout(std::string seqID);

    void OnInnerQrCodeNotify(const QrNotifyRecord& record) override;
    void OnInnerLoginNotify(const LoginNotifyRecord& record) override;
    void OnInnerGetLoginRecordNotify(const LoginNotifyRecord& record) override;

private:
    friend class VESKSingleton<VESKLoginFerno>;
    VESKLoginFerno();

    std::atomic<bool> mInitialised{false};
    VESKMessengerAnswers mAnswers;
};

} // namespace VESK
} // namespace Braxel

#endif
