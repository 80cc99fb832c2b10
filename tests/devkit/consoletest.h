#ifndef VESK_TESTS_DEVKIT_CONSOLETEST_H
#define VESK_TESTS_DEVKIT_CONSOLETEST_H

#include "devkit/consolecontrol.h"
#include "flow/messengertest.h"

namespace vesk::test {

/// A game whose simulated messenger asks the scan console what the player does.
class ConsoleTest : public MessengerTest {
protected:
    ConsoleTest(const char* channel, const char* simulator, const char* fileName)
        : MessengerTest(channel, simulator, fileName) {
        script("interactive=" + console.url() + "\nopenid=fr-1\n");
    }

    /// As a game does at its end. The component waits for the thread that serves the player then,
    /// and at no other end of a login that has failed.
    void TearDown() override { VESKLogin::UnInstall(); }

    /// Starts a login and waits until its code is at the console.
    Session showCode(size_t count = 1) {
        startLogin();
        observer.nextQrCode();
        return console.waitForSession(count);
    }

    const ConsoleControl console{environment("VESK_TEST_CONTROL_URL")};
};

} // namespace vesk::test

#endif
