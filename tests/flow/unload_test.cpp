// The library can only go away from a program that does not link its import library: this one
// loads it at run time and finds the facade by its mangled names.
#include <gtest/gtest.h>

#include "support/gamefolder.h"
#include "support/loadedlibrary.h"
#include "support/recordingobserver.h"
#include "support/waituntil.h"

using namespace Braxel::VESK;

namespace vesk::test {
namespace {

TEST(Unload, LibraryLeavesTheProcessAfterAVisit) {
    const GameFolder game;
    const LoadedLibrary sdk(game.path() / kSdkLibrary);
    static RecordingObserver& observer = *new RecordingObserver;

    sdk.find<void(VESKLoginObserver*)>(
        "_ZN6Braxel4VESK9VESKLogin16SetLoginObserverEPNS0_17VESKLoginObserverE")(&observer);
    sdk.find<void(const String&, const String&, const String&, const String&)>(
        "_ZN6Braxel4VESK9VESKLogin5LoginERKNS0_6StringES4_S4_S4_")("Steam", "", "", "");
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);

    VESKLoginRet held;
    EXPECT_TRUE(sdk.find<bool(VESKLoginRet&)>(
        "_ZN6Braxel4VESK9VESKLogin11GetLoginRetERNS0_12VESKLoginRetE")(held));
    EXPECT_NE(held.token, "");

    sdk.find<void(const String&, const String&, bool)>(
        "_ZN6Braxel4VESK9VESKLogin6LogoutERKNS0_6StringES4_b")("", "", false);
    EXPECT_EQ(observer.nextBase().ret.retCode, VESKError::SUCCESS);

    sdk.find<void()>("_ZN6Braxel4VESK9VESKLogin9UnInstallEv")();
    waitUntil(
        "the library to unload", [&] { return sdk.isLoaded() != kSdkUnloadsItself; },
        std::chrono::seconds(5));
    EXPECT_EQ(game.logLines("UnInstall platform sdk"), 1u);
    EXPECT_EQ(game.logLines("UnInstall vesk dll"), 1u);
    EXPECT_EQ(game.steamCalls("Shutdown"), 1u);
}

} // namespace
} // namespace vesk::test
