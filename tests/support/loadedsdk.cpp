#include "loadedsdk.h"

#include "support/waituntil.h"

using Braxel::VESK::String;
using Braxel::VESK::VESKLoginObserver;
using Braxel::VESK::VESKLoginRet;

namespace vesk::test {

void LoadedSdk::setObserver(VESKLoginObserver* observer) const {
    find<void(VESKLoginObserver*)>(
        "_ZN6Braxel4VESK9VESKLogin16SetLoginObserverEPNS0_17VESKLoginObserverE")(observer);
}

void LoadedSdk::login(const char* channel) const {
    find<void(const String&, const String&, const String&, const String&)>(
        "_ZN6Braxel4VESK9VESKLogin5LoginERKNS0_6StringES4_S4_S4_")(channel, "", "", "");
}

void LoadedSdk::logout() const {
    find<void(const String&, const String&, bool)>(
        "_ZN6Braxel4VESK9VESKLogin6LogoutERKNS0_6StringES4_b")("", "", false);
}

bool LoadedSdk::getLoginRet(VESKLoginRet& ret) const {
    return find<bool(VESKLoginRet&)>("_ZN6Braxel4VESK9VESKLogin11GetLoginRetERNS0_12VESKLoginRetE")(
        ret);
}

void LoadedSdk::unInstall() const {
    find<void()>("_ZN6Braxel4VESK9VESKLogin9UnInstallEv")();
}

void LoadedSdk::leave(std::chrono::seconds patience) const {
    waitUntil(
        "the library to leave", [this] { return isLoaded() != kSdkUnloadsItself; }, patience);
}

} // namespace vesk::test
