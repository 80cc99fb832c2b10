#ifndef VESK_TESTS_SUPPORT_ACTINGOBSERVER_H
#define VESK_TESTS_SUPPORT_ACTINGOBSERVER_H

#include <functional>

#include "vesk/vesklogin.h"

namespace vesk::test {

/// Calls back into the SDK from inside the results.
class ActingObserver final : public Braxel::VESK::VESKLoginObserver {
public:
    std::function<void(const Braxel::VESK::VESKLoginRet&)> onLogin = [](const auto&) {};
    std::function<void(const Braxel::VESK::VESKBaseRet&)> onBase = [](const auto&) {};
    std::function<void(const Braxel::VESK::VESKQrCodeRet&)> onQrCode = [](const auto&) {};

    void OnLoginRetNotify(const Braxel::VESK::VESKLoginRet& ret) override { onLogin(ret); }
    void OnBaseRetNotify(const Braxel::VESK::VESKBaseRet& ret) override { onBase(ret); }
    void OnQrCodeRetNotify(const Braxel::VESK::VESKQrCodeRet& ret) override { onQrCode(ret); }
};

} // namespace vesk::test

#endif
