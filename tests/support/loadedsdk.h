#ifndef VESK_TESTS_SUPPORT_LOADEDSDK_H
#define VESK_TESTS_SUPPORT_LOADEDSDK_H

#include <chrono>
#include <filesystem>

#include "vesk/vesklogin.h"

namespace vesk::test {

extern const char* const kSdkLibrary; ///< the SDK's file name
extern const bool kSdkUnloadsItself;  ///< whether UnInstall takes it out of the process

/// The SDK as a program has it that loads the library at run time and never frees it by itself: the
/// facade's operations, found by their mangled names.
class LoadedSdk {
public:
    /// Throws when the library cannot be loaded.
    explicit LoadedSdk(const std::filesystem::path& folder);

    void setObserver(Braxel::VESK::VESKLoginObserver* observer) const;
    void login(const char* channel) const;
    void logout() const;
    bool getLoginRet(Braxel::VESK::VESKLoginRet& ret) const;
    void unInstall() const;

    /// Waits until the library has left the process; throws when it does not. On Linux it stays.
    void leave(std::chrono::seconds patience) const;
    bool isLoaded() const;
    /// Frees it once, as a program does that wants it no more. Nothing may be called in it then.
    void close() const;

private:
    using Address = void (*)();
    /// Throws when there is none of this name.
    Address address(const char* name) const;
    template <typename Function>
    Function* find(const char* name) const {
        return reinterpret_cast<Function*>(address(name));
    }

    std::filesystem::path mFile;
    void* mHandle;
};

} // namespace vesk::test

#endif
