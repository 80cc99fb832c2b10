#ifndef VESK_TESTS_SUPPORT_LOADEDSDK_H
#define VESK_TESTS_SUPPORT_LOADEDSDK_H

#include <chrono>
#include <filesystem>

#include "support/loadedlibrary.h"
#include "vesk/vesklogin.h"

namespace vesk::test {

/// The SDK as a program has it that loads the library at run time: the facade's operations, found
/// by their mangled names.
class LoadedSdk {
public:
    explicit LoadedSdk(const std::filesystem::path& folder) : mLibrary(folder / kSdkLibrary) {}

    void setObserver(Braxel::VESK::VESKLoginObserver* observer) const;
    void login(const char* channel) const;
    void logout() const;
    bool getLoginRet(Braxel::VESK::VESKLoginRet& ret) const;
    void unInstall() const;

    /// Waits until the library has left the process; throws when it does not. On Linux it stays.
    void leave(std::chrono::seconds patience) const;
    bool isLoaded() const { return mLibrary.isLoaded(); }
    void close() const { mLibrary.close(); }

private:
    LoadedLibrary mLibrary;
};

} // namespace vesk::test

#endif
