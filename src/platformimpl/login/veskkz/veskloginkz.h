#ifndef VESK_PLATFORMIMPL_LOGIN_VESKKZ_VESKLOGINKZ_H
#define VESK_PLATFORMIMPL_LOGIN_VESKKZ_VESKLOGINKZ_H

#include <atomic>
#include <cstdint>
#include <string>

#include "module/vesksingleton.h"
#include "platformimpl/login/messenger/veskmessengeranswers.h"
#include "platformimpl/login/messenger/vesknotify.h"

namespace Braxel {
namespace VESK {

/// The KZ channel: login by QR code or with the player that the messenger remembers, token refresh
/// and logout. Answers come later, on the component's threads, under the sequence id of the last
/// login.
class VESKLoginKZ : public VESKChannelNotify {
public:
    static VESKLoginKZ* GetInstance() { return VESKSingleton<VESKLoginKZ>::GetInstance(); }

    bool IsInitialised() const { return mInitialised; }
    void InitializeOpenSDK();

    /// @param order of the login among all; one that is older than the last is dropped.
    /// @return false when nobody will answer.
    bool QrCodeLogin(std::string seqID, std::string preCode, uint64_t order);
    void AutoLogin(std::string seqID, std::string openid, uint64_t order);
    void GetLoginRecord(std::string oldToken);
    void Logout(std::string seqID);

    void OnInnerQrCodeNotify(const QrNotifyRecord& record) override;
    void OnInnerLoginNotify(const LoginNotifyRecord& record) override;
    void OnInnerGetLoginRecordNotify(const LoginNotifyRecord& record) override;

private:
    friend class VESKSingleton<VESKLoginKZ>;
    VESKLoginKZ();

    /// Answers the login when the component's events cannot be received: what it were asked for
    /// would never come.
    bool AnswerWithoutEvents(const std::string& seqID);

    std::atomic<bool> mInitialised{false};
    VESKMessengerAnswers mAnswers;
};

} // namespace VESK
} // namespace Braxel

#endif
