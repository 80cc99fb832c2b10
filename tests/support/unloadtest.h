#ifndef VESK_TESTS_SUPPORT_UNLOADTEST_H
#define VESK_TESTS_SUPPORT_UNLOADTEST_H

#include "support/gametest.h"
#include "support/loadedsdk.h"

namespace vesk::test {

using std::chrono::seconds;

/// A program that loads the library at run time: it can only go away from one that does not link
/// its import library. Everything is called through @c sdk.
struct Unload : GameTest {
    Unload() { sdk.setObserver(&observer); }

    static size_t heard() { return observer.loginCount() + observer.baseCount(); }

    /// UnInstall; from then on nothing may be delivered.
    void unInstall() {
        const auto start = std::chrono::steady_clock::now();
        sdk.unInstall();
        EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(2));
        delivered = heard();
    }

    /// @param patience how long what is still running in the library may take
    void expectGone(seconds patience) {
        sdk.leave(patience);
        EXPECT_EQ(heard(), delivered);
        EXPECT_EQ(game.logLines("UnInstall vesk dll"), 1u);
    }

    LoadedSdk sdk{game.path()};
    size_t delivered = 0;
};

} // namespace vesk::test

#endif
