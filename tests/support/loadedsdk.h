#ifndef VESK_TESTS_SUPPORT_LOADEDSDK_H
#define VESK_TESTS_SUPPORT_LOADEDSDK_H

#include "support/system.h"
#include "support/waituntil.h"
#include "vesk/vesklogin.h"

namespace vesk::test {

/// The SDK as a program has it that loads the library at run time and never frees it by itself: the
/// facade's operations, found by their mangled names.
class LoadedSdk {
public:
    /// Throws when the library cannot be loaded.
    explicit LoadedSdk(const std::filesystem::path& folder)
        : mFile(folder / kSdkLibrary), mLibrary(openLibrary(mFile)) {}

    void setObserver(Braxel::VESK::VESKLoginObserver* observer) const {
        find<void(Braxel::VESK::VESKLoginObserver*)>(
            "_ZN6Braxel4VESK9VESKLogin16SetLoginObserverEPNS0_17VESKLoginObserverE")(observer);
    }
    void login(const char* channel) const {
        find<void(const String&, const String&, const String&, const String&)>(
            "_ZN6Braxel4VESK9VESKLogin5LoginERKNS0_6StringES4_S4_S4_")(channel, "", "", "");
    }
    void logout() const {
        find<void(const String&, const String&, bool)>(
            "_ZN6Braxel4VESK9VESKLogin6LogoutERKNS0_6StringES4_b")("", "", false);
    }
    bool getLoginRet(Braxel::VESK::VESKLoginRet& ret) const {
        return find<bool(Braxel::VESK::VESKLoginRet&)>(
            "_ZN6Braxel4VESK9VESKLogin11GetLoginRetERNS0_12VESKLoginRetE")(ret);
    }
    void unInstall() const { find<void()>("_ZN6Braxel4VESK9VESKLogin9UnInstallEv")(); }

    /// Waits until the library has left the process; throws when it does not. On Linux it stays.
    void leave(std::chrono::seconds patience) const {
        waitUntil(
            "the library to leave", [this] { return isLoaded() != kSdkUnloadsItself; }, patience);
    }
    bool isLoaded() const { return isLibraryLoaded(mFile); }
    /// Frees it once, as a program does that wants it no more. Nothing may be called in it then.
    void close() const { closeLibrary(mLibrary); }

private:
    using String = Braxel::VESK::String;
    template <typename Function>
    Function* find(const char* name) const {
        return reinterpret_cast<Function*>(findInLibrary(mLibrary, name));
    }

    std::filesystem::path mFile;
    void* mLibrary;
};

} // namespace vesk::test

#endif
