#ifndef VESK_TESTS_FLOW_UNLOADTEST_H
#define VESK_TESTS_FLOW_UNLOADTEST_H

#include <gtest/gtest.h>

#include "support/backendcontrol.h"
#include "support/files.h"
#include "support/gamefolder.h"
#include "support/loadedsdk.h"
#include "support/recordingobserver.h"

namespace vesk::test {

using namespace Braxel::VESK;
using std::chrono::seconds;

/// A program that loads the library at run time: it can only go away from one that does not link
/// its import library.
struct Unload : ::testing::Test {
    Unload() { sdk.setObserver(&observer); }

    /// UnInstall; from then on nothing may be delivered.
    void unInstall() {
        const auto start = std::chrono::steady_clock::now();
        sdk.unInstall();
        EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(2));
        delivered = observer.loginCount() + observer.baseCount();
    }

    /// @param patience how long what is still running in the library may take
    void expectGone(seconds patience) {
        sdk.leave(patience);
        EXPECT_EQ(observer.loginCount() + observer.baseCount(), delivered);
        EXPECT_EQ(game.logLines("UnInstall vesk dll"), 1u);
    }

    const GameFolder game;
    BackendControl backend{environment("VESK_TEST_CONTROL_URL")};
    LoadedSdk sdk{game.path()};
    size_t delivered = 0;
    inline static RecordingObserver& observer = *new RecordingObserver;
};

} // namespace vesk::test

#endif
