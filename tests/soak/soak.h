#ifndef VESK_TESTS_SOAK_SOAK_H
#define VESK_TESTS_SOAK_SOAK_H

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "support/backendcontrol.h"
#include "support/files.h"
#include "support/gamefolder.h"
#include "support/recordingobserver.h"

namespace vesk::soak {

/// What was asked of the SDK, what it answered and what the backend has seen, and whether they
/// agree.
class Ledger {
public:
    void add(const std::string& account, long count = 1) { mAccounts[account] += count; }
    /// A check; the first ten that do not hold are printed.
    void expect(bool holds, const std::string& what);
    /// Prints the accounts and what did not hold, and last "N passed, N failed", each line after
    /// "soak: ". @return whether all held
    bool close(const char* title) const;

private:
    std::map<std::string, long> mAccounts;
    long mHeld = 0;
    long mFailed = 0;
    std::vector<std::string> mFindings;
};

/// A game that logs in and out for a long time, in the folder and with the backend that
/// tests/support/run-case.sh has made for it.
class Soak {
public:
    virtual ~Soak() = default;

    /// @param length how long at least
    virtual void run(std::chrono::seconds length) = 0;

    Ledger ledger;

protected:
    Soak() { Braxel::VESK::VESKLogin::SetLoginObserver(&observer); }

    /// Logs in from a thread of its own and waits for the one result.
    Braxel::VESK::VESKLoginRet login(const char* channel);
    /// Logs out; the game is told, the backend is told, and nothing is held afterwards.
    /// @param token what the backend is told when a refresh has put the messenger's token in its
    ///        place, which the backend does not know
    void logout(const std::string& token = "");

    const test::GameFolder game;
    test::BackendControl backend{test::environment("VESK_TEST_CONTROL_URL")};
    // Never deleted: threads of the SDK may outlive the soak.
    inline static test::RecordingObserver& observer = *new test::RecordingObserver;
};

/// Many players, one in ten in trouble: ten thousand logins and more.
std::unique_ptr<Soak> makeSteamSoak();
/// One player who stays for hours and gets a fresh token every four minutes.
std::unique_ptr<Soak> makeFernoSoak();

} // namespace vesk::soak

#endif
