#ifndef VESK_BENCH_SOAK_SOAKOBSERVER_H
#define VESK_BENCH_SOAK_SOAKOBSERVER_H

#include <condition_variable>
#include <mutex>

#include "vesk/vesklogin.h"

namespace vesk::soak {

/// Counts the results and keeps the last of each kind: it must not grow itself.
class SoakObserver final : public Braxel::VESK::VESKLoginObserver {
public:
    void OnLoginRetNotify(const Braxel::VESK::VESKLoginRet& ret) override;
    void OnBaseRetNotify(const Braxel::VESK::VESKBaseRet& ret) override;
    void OnQrCodeRetNotify(const Braxel::VESK::VESKQrCodeRet& /*ret*/) override {}

    long logins() const;
    long bases() const;

    /// The login result after which there have been @p count of them. Throws when it does not come
    /// within half a minute.
    Braxel::VESK::VESKLoginRet waitForLogin(long count);
    /// As waitForLogin(), for base results.
    Braxel::VESK::VESKBaseRet waitForBase(long count);

private:
    template <typename Ret>
    void keep(Ret& last, long& count, const Ret& ret);
    template <typename Ret>
    Ret wait(const Ret& last, const long& count, long wanted);

    mutable std::mutex mMutex;
    std::condition_variable mArrived;
    Braxel::VESK::VESKLoginRet mLogin;
    Braxel::VESK::VESKBaseRet mBase;
    long mLogins = 0;
    long mBases = 0;
};

} // namespace vesk::soak

#endif
