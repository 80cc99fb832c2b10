#ifndef VESK_TESTS_DEVKIT_SCANPAGETEST_H
#define VESK_TESTS_DEVKIT_SCANPAGETEST_H

#include <map>
#include <string>
#include <vector>

#include "support/gametest.h"

namespace vesk::test {

/// A QR code as the control API lists it: texts as they are, other members as JSON.
using Session = std::map<std::string, std::string>;

/// The player at the scan page, as a script plays him.
class ScanPlayer {
public:
    const std::string url = environment("VESK_TEST_CONTROL_URL");

    /// @param header a further one, as "Name: value"
    ControlAnswer get(const std::string& path, const std::string& header = "Accept: */*") const;
    ControlAnswer post(const std::string& path, const std::string& json,
                       const std::string& header = "Accept: */*",
                       const std::string& type = "application/json") const;

    std::vector<Session> sessions() const;
    /// A member of the newest session.
    std::string newest(const std::string& member) const { return sessions().back().at(member); }
    /// Waits until there are @p count sessions and returns the id of the last one.
    std::string waitForSession(size_t count) const;
    void waitForState(const std::string& id, const std::string& state) const;

    /// Registers a session; returns its id.
    std::string begin(const std::string& channel) const;
    /// Presses a button; returns the HTTP status. @param more further members, with a comma
    long press(const std::string& id, const std::string& button,
               const std::string& more = "") const;
};

/// A game whose simulated messenger asks the scan page what the player does.
class ScanPageTest : public MessengerTest {
protected:
    ScanPageTest(const char* channel, const char* simulator, const char* fileName)
        : MessengerTest(channel, simulator, fileName) {
        script("interactive=" + player.url + "\nopenid=fr-1\n");
    }

    /// As a game does at its end. The component waits for the thread that serves the player then,
    /// and at no other end of a login that has failed.
    void TearDown() override { VESKLogin::UnInstall(); }

    /// Starts a login and waits until its code is on the scan page; returns the session's id.
    std::string showCode(size_t count = 1);

    struct Refusal {
        const char *button, *more, *state, *logged;
    };
    /// Each fails a login of its own and ends its session.
    void expectEachToFailALogin(const std::vector<Refusal>& refusals);

    void expectUnInstallNotToWaitForThePlayer();

    const ScanPlayer player;
};

} // namespace vesk::test

#endif
