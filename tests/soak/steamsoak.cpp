#include <algorithm>
#include <thread>

#include "faults/processcounts.h"
#include "soak/soak.h"
#include "support/waituntil.h"

using namespace Braxel::VESK;

namespace vesk::soak {

namespace {

constexpr int kThreads = 64;
constexpr long kRounds = 80; ///< 10,240 logins
constexpr int kOneIn = 10;
constexpr long kMostGrowth = 1 << 20; ///< bytes

struct Fault {
    const char* name;
    test::Answer answer;
    int32_t retCode;
    int32_t lowest, highest; ///< of the third code
};

const std::vector<Fault>& faults() {
    static const std::vector<Fault> list = {
        {"refused", {"auth/login", R"({"ret":1001,"msg":"no"})"}, 5, 1001, 1001},
        {"status 503", {"auth/login", "busy", 503}, 4, 503, 503},
        {"no JSON", {"auth/login", "<html>"}, 5, 0, 0},
        {"reset", {"auth/login", "", 200, 0, "reset"}, 4, 1, 99},
        {"cut", {"auth/login", "", 200, 50, "cut"}, 4, 1, 99},
        {"empty", {"auth/login", ""}, 5, 0, 0},
    };
    return list;
}

/// The value in the middle.
size_t middle(std::vector<size_t> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2),
                     values.end());
    return values[values.size() / 2];
}

/// Rounds: 64 threads log in at once, then one after the other, and the player leaves. One request
/// in ten meets a fault.
class SteamSoak : public Soak {
public:
    void run(std::chrono::seconds length) override;

private:
    /// Only the newest of several logins has to be answered.
    void burst(bool withHang);
    void turns();
    void compareWithBackend(size_t atLeast, size_t atMost);
    /// Waits until no request runs any more, so that whatever was to be answered has been.
    void waitUntilQuiet();
    /// Descriptors, threads and memory: the last quarter of the rounds beside the first.
    void compareSamples();

    size_t mQuietThreads = 0;
    std::vector<test::ProcessCounts> mSamples;
};

void SteamSoak::run(std::chrono::seconds length) {
    const auto end = std::chrono::steady_clock::now() + length;
    ledger.expect(login("Steam").retCode == VESKError::SUCCESS, "the first login succeeds");
    // The timer's thread comes a moment after the result, the request's leaves.
    test::waitUntil("the timer", [this] { return game.logLines("timer is waiting") == 1; });
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    mQuietThreads = test::countProcess().threads;
    compareWithBackend(1, 1);
    for (long number = 0; number < kRounds || std::chrono::steady_clock::now() < end; ++number) {
        burst(number % 20 == 19);
        turns();
        logout();
        waitUntilQuiet();
        mSamples.push_back(test::countProcess());
        ledger.add("rounds");
    }
    ledger.add("results heard", static_cast<long>(observer.loginCount()));
    compareSamples();
}

void SteamSoak::burst(bool withHang) {
    for (int i = 0; i < kThreads / kOneIn; ++i) {
        test::Answer answer = faults()[static_cast<size_t>(i) % faults().size()].answer;
        if (i == 0 && withHang) {
            answer.action = "hang"; // the request's own time-out ends it
            ledger.add("answers that hung");
        }
        backend.next(answer);
        ledger.add("faults, all at once");
    }
    const size_t before = observer.loginCount();
    std::vector<std::thread> games;
    games.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        games.emplace_back([] { VESKLogin::Login("Steam", "", "", ""); });
    }
    for (std::thread& thread : games) {
        thread.join();
    }
    ledger.add("logins asked for", kThreads);
    waitUntilQuiet();
    const long heard = static_cast<long>(observer.loginCount() - before);
    for (long i = 0; i < heard; ++i) {
        observer.nextLogin();
    }
    ledger.expect(heard >= 1 && heard <= kThreads,
                  "of logins at once the newest is answered, and none twice: " +
                      std::to_string(heard) + " results");
    ledger.add("superseded, so without a result", kThreads - heard);
    // One that is superseded before the Steam client has answered sends nothing.
    compareWithBackend(static_cast<size_t>(heard), kThreads);
}

void SteamSoak::turns() {
    for (int i = 0; i < kThreads; ++i) {
        if (i % kOneIn != kOneIn / 2) {
            ledger.expect(login("Steam").retCode == VESKError::SUCCESS, "a login succeeds");
            continue;
        }
        const Fault& fault = faults()[static_cast<size_t>(i / kOneIn) % faults().size()];
        backend.next(fault.answer);
        ledger.add(std::string("fault, one by one: ") + fault.name);
        const VESKLoginRet ret = login("Steam");
        ledger.expect(ret.retCode == fault.retCode && ret.thirdCode >= fault.lowest &&
                          ret.thirdCode <= fault.highest,
                      std::string(fault.name) + " has come as " + std::to_string(ret.retCode) +
                          "/" + std::to_string(ret.thirdCode));
    }
    compareWithBackend(kThreads, kThreads);
}

void SteamSoak::compareWithBackend(size_t atLeast, size_t atMost) {
    const auto requests = backend.requests("auth/login");
    ledger.add("requests that the backend has seen", static_cast<long>(requests.size()));
    ledger.expect(requests.size() >= atLeast && requests.size() <= atMost,
                  "the backend has seen " + std::to_string(requests.size()) + " requests, not " +
                      std::to_string(atLeast) + " to " + std::to_string(atMost));
    ledger.expect(std::all_of(requests.begin(), requests.end(),
                              [](const test::Request& request) { return request.verdict == "ok"; }),
                  "the backend finds every request good");
    backend.clear();
}

void SteamSoak::waitUntilQuiet() {
    test::waitUntil(
        "the requests to end", [this] { return test::countProcess().threads <= mQuietThreads; },
        std::chrono::seconds(40));
}

void SteamSoak::compareSamples() {
    const size_t quarter = mSamples.size() / 4;
    const auto compare = [&](const char* what, size_t test::ProcessCounts::*count, long most) {
        std::vector<size_t> first;
        std::vector<size_t> last;
        for (size_t i = 0; i < quarter; ++i) {
            first.push_back(mSamples[i].*count);
            last.push_back(mSamples[mSamples.size() - 1 - i].*count);
        }
        const long growth = static_cast<long>(middle(last)) - static_cast<long>(middle(first));
        ledger.add(std::string("growth: ") + what, growth);
        ledger.expect(growth <= most,
                      std::string(what) + " have grown by " + std::to_string(growth));
    };
    compare("descriptors", &test::ProcessCounts::descriptors, 0);
    compare("threads", &test::ProcessCounts::threads, 0);
    compare("bytes of memory", &test::ProcessCounts::residentBytes, kMostGrowth);
}

} // namespace

std::unique_ptr<Soak> makeSteamSoak() {
    return std::make_unique<SteamSoak>();
}

} // namespace vesk::soak
