// Two games that log in and out for VESK_SOAK_SECONDS at least, or until something is wrong. What
// they asked for, what they heard and what their backends saw has to agree.
#include <algorithm>

#include "support/gametest.h"
#include "support/system.h"

namespace vesk::test {
namespace {

using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

constexpr size_t kPlayers = 64;
constexpr size_t kRounds = 80; ///< 10,240 logins
constexpr size_t kOneIn = 10;
constexpr long kMostGrowth = 1 << 20; ///< bytes

// A look for old tokens comes every 240 seconds and takes those that have a minute or less.
constexpr seconds kLook(240);
constexpr seconds kLifetime(290);

const Answer kFaults[] = {
    {"auth/login", R"({"ret":1001,"msg":"no"})"},
    {"auth/login", "busy", 503},
    {"auth/login", "<html>"},
    {"auth/login", "", 200, 0, "reset"},
    {"auth/login", "", 200, 50, "cut"},
    {"auth/login", ""},
};

class Soak : public GameTest {
protected:
    /// Logs in from a thread of its own and waits for the one result.
    VESKLoginRet visit(const char* channel) {
        const size_t before = observer.loginCount();
        start();
        std::thread([channel] { VESKLogin::Login(channel, "", "", ""); }).join();
        VESKLoginRet ret = observer.nextLogin().ret;
        EXPECT_EQ(observer.loginCount(), before + 1);
        return ret;
    }
    /// The game is told once, the backend is told, and nothing is held afterwards.
    void leave() {
        const size_t before = observer.baseCount();
        const std::string token = held().token;
        EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
        EXPECT_NE(backend.waitForRequest("auth/logout").body.find('"' + token + '"'),
                  std::string::npos);
        EXPECT_FALSE(isHeld());
        EXPECT_EQ(observer.baseCount(), before + 1);
        backend.clear();
    }
    bool isOver() const { return HasFailure() || Clock::now() >= end; }

    const Clock::time_point end =
        Clock::now() + seconds(std::stoi(environment("VESK_SOAK_SECONDS")));
};

/// Rounds: 64 threads log in at once, then one after the other, and the player leaves.
class ManyPlayers : public Soak {
protected:
    /// Only the newest of several logins has to be answered.
    void burst(bool withHang) {
        for (size_t i = 0; i < kPlayers / kOneIn; ++i) {
            Answer answer = kFaults[i % std::size(kFaults)];
            if (i == 0 && withHang) {
                answer.action = "hang"; // the request's own time-out ends it
            }
            backend.next(answer);
        }
        const size_t before = observer.loginCount();
        size_t basesTaken = observer.baseCount();
        std::vector<std::thread> games;
        for (size_t i = 0; i < kPlayers; ++i) {
            games.emplace_back([] { VESKLogin::Login("Steam", "", "", ""); });
        }
        for (std::thread& thread : games) {
            thread.join();
        }
        waitUntilQuiet();
        const size_t heard = observer.loginCount() - before;
        for (size_t i = 0; i < heard; ++i) {
            observer.nextLogin();
        }
        // Of two logins that both want to end the held one, the later finds none.
        for (; observer.baseCount() > basesTaken; ++basesTaken) {
            EXPECT_EQ(observer.nextBase().ret.retCode, VESKError::NO_STORED_LOGIN);
        }
        EXPECT_GE(heard, 1u);
        EXPECT_LE(heard, kPlayers);
        // One that is superseded before the Steam client has answered sends nothing.
        compareWithBackend(heard, kPlayers);
    }

    void turns() {
        for (size_t i = 0; i < kPlayers; ++i) {
            const bool isGood = i % kOneIn != kOneIn / 2;
            if (!isGood) {
                backend.next(kFaults[i / kOneIn % std::size(kFaults)]);
            }
            EXPECT_EQ(visit("Steam").retCode == VESKError::SUCCESS, isGood) << i;
        }
        compareWithBackend(kPlayers, kPlayers);
    }

    void compareWithBackend(size_t atLeast, size_t atMost) {
        const auto requests = backend.requests("auth/login");
        EXPECT_GE(requests.size(), atLeast);
        EXPECT_LE(requests.size(), atMost);
        for (const Request& request : requests) {
            EXPECT_EQ(request.verdict, "ok");
        }
        backend.clear();
    }

    /// Waits until no request runs any more, so that whatever was to be answered has been. The
    /// timer runs while a login is held, and starts a moment later than that.
    void waitUntilQuiet() const {
        int still = 0;
        waitUntil(
            "the requests to end",
            [&] {
                const size_t timers = isHeld() ? 1 : 0;
                still = countProcess().threads <= threadsWithoutTimer + timers ? still + 1 : 0;
                return still == 5;
            },
            seconds(40));
    }

    /// The last quarter of the rounds beside the first, each by the value in its middle.
    void expectGrowth(const char* what, size_t ProcessCounts::*number, long most) {
        const auto less = [number](const auto& a, const auto& b) { return a.*number < b.*number; };
        const auto quarter = static_cast<long>(samples.size() / 4);
        std::sort(samples.begin(), samples.begin() + quarter, less);
        std::sort(samples.end() - quarter, samples.end(), less);
        const long growth = static_cast<long>((samples.end() - quarter)[quarter / 2].*number) -
                            static_cast<long>(samples.begin()[quarter / 2].*number);
        std::printf("\nsoak: %s: grown by %ld in %zu rounds\n", what, growth, samples.size());
        EXPECT_LE(growth, most) << what;
    }

    size_t threadsWithoutTimer = 0;
    std::vector<ProcessCounts> samples;
};

TEST_F(ManyPlayers, OneRequestInTenInTrouble) {
    EXPECT_EQ(visit("Steam").retCode, VESKError::SUCCESS);
    // The timer's thread comes a moment after the result, the request's leaves: later on a busy
    // machine.
    waitForLogLine("timer is waiting");
    std::this_thread::sleep_for(seconds(2));
    threadsWithoutTimer = countProcess().threads - 1;
    compareWithBackend(1, 1);
    while (!isOver() || (samples.size() < kRounds && !HasFailure())) {
        burst(samples.size() % 20 == 19);
        turns();
        leave();
        waitUntilQuiet();
        samples.push_back(countProcess());
    }
    expectGrowth("descriptors", &ProcessCounts::descriptors, 0);
    expectGrowth("threads", &ProcessCounts::threads, 0);
    expectGrowth("bytes of memory", &ProcessCounts::residentBytes, kMostGrowth);
}

using OnePlayer = Soak;

TEST_F(OnePlayer, StaysAndGetsFreshTokens) {
    const Messenger ferno(game, "ferno", "frlogin.dll");
    long refreshed = 0;
    while (!isOver()) {
        const auto expiry = std::chrono::duration_cast<seconds>(
            std::chrono::system_clock::now().time_since_epoch() + kLifetime);
        backend.next(loginAnswer("A", R"(,"channel_info":{"access_token":"old"},)"
                                      R"("token_expire_time":)" +
                                          std::to_string(expiry.count())));
        EXPECT_EQ(visit("Ferno").retCode, VESKError::SUCCESS);
        EXPECT_EQ(backend.requests("auth/pcprecode").size(), 1u);
        EXPECT_EQ(backend.requests("auth/login").size(), 1u);
        for (int i = 0; i < 2 && Clock::now() + kLook < end; ++i) {
            const std::string token = "token-" + std::to_string(++refreshed);
            ferno.script("ctt_timeout=" + std::to_string(kLifetime.count()) + "\nctt=" + token);
            waitUntil(
                token,
                [&token] {
                    std::this_thread::sleep_for(seconds(1)); // each look is a line of the log
                    return held().token == token;
                },
                kLook + seconds(40));
        }
        leave();
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    std::printf("\nsoak: tokens refreshed: %ld\n", refreshed);
}

} // namespace
} // namespace vesk::test
