// Many players, one request in ten in trouble: ten thousand logins and more.
#include <algorithm>

#include "soak/soaktest.h"
#include "support/system.h"

namespace vesk::test {
namespace {

constexpr size_t kThreads = 64;
constexpr size_t kRounds = 80; ///< 10,240 logins
constexpr size_t kOneIn = 10;
constexpr long kMostGrowth = 1 << 20; ///< bytes

struct Fault {
    const char* name;
    Answer answer;
    int32_t retCode;
    int32_t lowest, highest; ///< of the third code
};

const std::vector<Fault> kFaults = {
    {"refused", {"auth/login", R"({"ret":1001,"msg":"no"})"}, 5, 1001, 1001},
    {"status 503", {"auth/login", "busy", 503}, 4, 503, 503},
    {"no JSON", {"auth/login", "<html>"}, 5, 0, 0},
    {"reset", {"auth/login", "", 200, 0, "reset"}, 4, 1, 99},
    {"cut", {"auth/login", "", 200, 50, "cut"}, 4, 1, 99},
    {"empty", {"auth/login", ""}, 5, 0, 0},
};

/// Rounds: 64 threads log in at once, then one after the other, and the player leaves.
class SteamSoak : public SoakTest {
protected:
    /// Only the newest of several logins has to be answered.
    void burst(bool withHang) {
        for (size_t i = 0; i < kThreads / kOneIn; ++i) {
            Answer answer = kFaults[i % kFaults.size()].answer;
            if (i == 0 && withHang) {
                answer.action = "hang"; // the request's own time-out ends it
                count("answers that hung");
            }
            backend.next(answer);
            count("faults, all at once");
        }
        const size_t before = observer.loginCount();
        size_t basesTaken = observer.baseCount();
        std::vector<std::thread> games;
        for (size_t i = 0; i < kThreads; ++i) {
            games.emplace_back([] { VESKLogin::Login("Steam", "", "", ""); });
        }
        for (std::thread& thread : games) {
            thread.join();
        }
        count("logins asked for", kThreads);
        waitUntilQuiet();
        const size_t heard = observer.loginCount() - before;
        for (size_t i = 0; i < heard; ++i) {
            observer.nextLogin();
        }
        // Of two logins that both want to end the held one, the later finds none.
        while (observer.baseCount() > basesTaken) {
            check(observer.nextBase().ret.retCode == VESKError::NO_STORED_LOGIN,
                  "a login ends the one before without a word, or another has done so");
            count("logins that found the held one ended");
            ++basesTaken;
        }
        check(heard >= 1 && heard <= kThreads,
              "of logins at once the newest is answered, and none twice: " + std::to_string(heard));
        count("superseded, so without a result", static_cast<long>(kThreads - heard));
        // One that is superseded before the Steam client has answered sends nothing.
        compareWithBackend(heard, kThreads);
    }

    void turns() {
        for (size_t i = 0; i < kThreads; ++i) {
            if (i % kOneIn != kOneIn / 2) {
                check(loginElsewhere("Steam").retCode == VESKError::SUCCESS, "a login succeeds");
                continue;
            }
            const Fault& fault = kFaults[i / kOneIn % kFaults.size()];
            backend.next(fault.answer);
            count(std::string("fault, one by one: ") + fault.name);
            const VESKLoginRet ret = loginElsewhere("Steam");
            check(ret.retCode == fault.retCode && ret.thirdCode >= fault.lowest &&
                      ret.thirdCode <= fault.highest,
                  std::string(fault.name) + " has come as " + std::to_string(ret.retCode) + "/" +
                      std::to_string(ret.thirdCode));
        }
        compareWithBackend(kThreads, kThreads);
    }

    void compareWithBackend(size_t atLeast, size_t atMost) {
        const auto requests = backend.requests("auth/login");
        count("requests that the backend has seen", static_cast<long>(requests.size()));
        check(requests.size() >= atLeast && requests.size() <= atMost,
              "the backend has seen " + std::to_string(requests.size()) + " requests, not " +
                  std::to_string(atLeast) + " to " + std::to_string(atMost));
        check(std::all_of(requests.begin(), requests.end(),
                          [](const Request& request) { return request.verdict == "ok"; }),
              "the backend finds every request good");
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
    void compare(const char* what, size_t ProcessCounts::*number, long most) {
        const size_t quarter = samples.size() / 4;
        std::vector<size_t> first;
        std::vector<size_t> last;
        for (size_t i = 0; i < quarter; ++i) {
            first.push_back(samples[i].*number);
            last.push_back(samples[samples.size() - 1 - i].*number);
        }
        std::sort(first.begin(), first.end());
        std::sort(last.begin(), last.end());
        const long growth =
            static_cast<long>(last.at(quarter / 2)) - static_cast<long>(first.at(quarter / 2));
        count(std::string("growth: ") + what, growth);
        check(growth <= most, std::string(what) + " have grown by " + std::to_string(growth));
    }

    size_t threadsWithoutTimer = 0;
    std::vector<ProcessCounts> samples;
};

TEST_F(SteamSoak, ManyPlayersOneInTenInTrouble) {
    check(loginElsewhere("Steam").retCode == VESKError::SUCCESS, "the first login succeeds");
    // The timer's thread comes a moment after the result, the request's leaves: later on a busy
    // machine.
    waitForLogLine("timer is waiting");
    std::this_thread::sleep_for(seconds(2));
    threadsWithoutTimer = countProcess().threads - 1;
    compareWithBackend(1, 1);
    while (samples.size() < kRounds || Clock::now() < end) {
        burst(samples.size() % 20 == 19);
        turns();
        leave();
        waitUntilQuiet();
        samples.push_back(countProcess());
        count("rounds");
    }
    count("results heard", static_cast<long>(observer.loginCount()));
    compare("descriptors", &ProcessCounts::descriptors, 0);
    compare("threads", &ProcessCounts::threads, 0);
    compare("bytes of memory", &ProcessCounts::residentBytes, kMostGrowth);
}

} // namespace
} // namespace vesk::test
