#ifndef VESK_TESTS_DEVKIT_SCANPAGETEST_H
#define VESK_TESTS_DEVKIT_SCANPAGETEST_H

#include "devkit/scanplayer.h"
#include "support/gametest.h"

namespace vesk::test {

/// A game whose simulated messenger asks the scan page what the player does.
class ScanPageTest : public MessengerTest {
protected:
    ScanPageTest(const char* channel, const char* simulator, const char* fileName)
        : MessengerTest(channel, simulator, fileName) {
        script("interactive=" + player.url() + "\nopenid=fr-1\n");
    }

    /// As a game does at its end. The component waits for the thread that serves the player then,
    /// and at no other end of a login that has failed.
    void TearDown() override { VESKLogin::UnInstall(); }

    /// Starts a login and waits until its code is on the scan page.
    Session showCode(size_t count = 1) {
        startLogin();
        observer.nextQrCode();
        return player.waitForSession(count);
    }

    const ScanPlayer player{environment("VESK_TEST_CONTROL_URL")};
};

} // namespace vesk::test

#endif
