#ifndef VESK_TESTS_SOAK_SOAKTEST_H
#define VESK_TESTS_SOAK_SOAKTEST_H

#include <chrono>
#include <map>

#include "support/gametest.h"

namespace vesk::test {

using std::chrono::seconds;

/// A game that logs in and out for VESK_SOAK_SECONDS at least. What was asked of the SDK, what it
/// answered and what the backend has seen are counted, and have to agree.
class SoakTest : public GameTest {
protected:
    using Clock = std::chrono::steady_clock;

    void count(const std::string& account, long more = 1) { mAccounts[account] += more; }
    /// The first ten that do not hold are printed.
    void check(bool holds, const std::string& what) {
        ++(holds ? mHeld : mFailed);
        if (!holds && mFailed <= 10) {
            std::printf("\nsoak:   not so: %s\n", what.c_str());
        }
    }

    /// Logs in from a thread of its own and waits for the one result.
    VESKLoginRet loginElsewhere(const char* channel) {
        const size_t before = observer.loginCount();
        start();
        std::thread([channel] { VESKLogin::Login(channel, "", "", ""); }).join();
        count("logins asked for");
        VESKLoginRet ret = observer.nextLogin().ret;
        check(observer.loginCount() == before + 1, "a login has one result");
        return ret;
    }
    /// Logs out; the game is told, the backend is told, and nothing is held afterwards.
    /// @param token what the backend is told when a refresh has put the messenger's token in its
    ///        place, which the backend does not know
    void leave(const std::string& token = "") {
        const size_t before = observer.baseCount();
        const VESKBaseRet ret = logout();
        check(ret.retCode == VESKError::SUCCESS,
              "a logout succeeds: " + std::to_string(ret.retCode) + " " + ret.retMsg);
        count("logouts asked for");
        const Request request = backend.waitForRequest("auth/logout");
        check(token.empty() ? request.verdict == "ok"
                            : request.body.find('"' + token + '"') != std::string::npos,
              "the backend is told of a logout: " + request.verdict + ", " + request.body);
        check(!isHeld(), "nothing is held after a logout");
        check(observer.baseCount() == before + 1, "a logout has one result");
    }

    /// Prints the accounts, and last "N passed, N failed", each line after "soak: ".
    void TearDown() override {
        // The library prints, too, and no line ends.
        std::printf("\nsoak: %s\n",
                    ::testing::UnitTest::GetInstance()->current_test_info()->name());
        for (const auto& [account, number] : mAccounts) {
            std::printf("soak:   %-36s %10ld\n", account.c_str(), number);
        }
        std::printf("soak: %ld passed, %ld failed\n", mHeld, mFailed);
        EXPECT_GT(mHeld, 0);
        EXPECT_EQ(mFailed, 0);
    }

    const Clock::time_point end =
        Clock::now() + seconds(std::stoi(environment("VESK_SOAK_SECONDS")));

private:
    std::map<std::string, long> mAccounts;
    long mHeld = 0;
    long mFailed = 0;
};

} // namespace vesk::test

#endif
