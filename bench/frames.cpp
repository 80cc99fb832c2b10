// What the game's main loop costs its frames: a disk that takes 20 ms for each open, write and
// close, a component that needs 1.5 s to start, a login, a refresh and a logout.
#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "foundation/task/vesktask.h"
#include "groups.h"
#include "login/veskloginmanager.h"
#include "microbench.h"
#include "slowdisk.h"
#include "support/backendcontrol.h"
#include "support/files.h"
#include "vesk/vesk_mainloop.h"

using Braxel::VESK::VESKLoginManager;

namespace vesk::bench {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr milliseconds kDisk{20};
constexpr microseconds kFrame{16667};
constexpr microseconds kShortFrame{500}; // for many calls
constexpr double kWorkNs = 4e6;          // what a game does in each frame

/// What each function has taken, in nanoseconds.
using Calls = std::map<std::string, std::vector<double>>;

template <typename Call>
void timed(Calls& calls, const char* function, const Call& call) {
    const double start = nowNs();
    call();
    calls[function].push_back(nowNs() - start);
}

vesk_login_state emptyState() {
    vesk_login_state state = {};
    state.struct_size = sizeof state;
    return state;
}

/// Looks at the SDK as a game does in each frame. @return the kind of what has gone well, or 0
int32_t look(Calls& calls) {
    vesk_login_state state = emptyState();
    timed(calls, "vesk_state", [&] { vesk_state(&state); });
    vesk_result* result = nullptr;
    timed(calls, "vesk_next_result", [&] { vesk_next_result(&result); });
    int32_t kind = 0;
    if (result != nullptr) {
        const bool isGood = result->login != nullptr  ? result->login->ret_code == VESK_SUCCESS
                            : result->base != nullptr ? result->base->ret_code == VESK_SUCCESS
                                                      : true;
        kind = isGood ? result->kind : 0;
    }
    timed(calls, "vesk_result_free", [&] { vesk_result_free(result); });
    return kind;
}

/// Frames until @p isDone says so. @return how long the longest was
double frames(microseconds length, double workNs, const std::function<bool()>& isDone) {
    const auto patience = steady_clock::now() + seconds(90);
    auto next = steady_clock::now();
    double longest = 0;
    double start = nowNs();
    for (bool done = false; !done;) {
        const double work = nowNs();
        while (nowNs() - work < workNs) {
        }
        done = isDone();
        next += length;
        std::this_thread::sleep_until(next);
        const double end = nowNs();
        longest = std::max(longest, end - start);
        start = end;
        if (steady_clock::now() > patience) {
            throw std::runtime_error("a result does not come");
        }
    }
    return longest;
}

/// Logs in after a cancelled login, gets a fresh token, logs out. @return the longest frame
double visit(Calls& calls, microseconds length, double workNs) {
    test::BackendControl backend(test::environment("VESK_TEST_CONTROL_URL"));
    // About to expire when it is there.
    backend.next({"auth/login", R"({"ret":0,"openid":"o","uid":"u","token":"t",)"
                                R"("channel_info":{"access_token":"old"},"token_expire_time":)" +
                                    std::to_string(std::time(nullptr) + 60) + "}"});
    std::thread timer;
    const std::pair<int32_t, std::function<void()>> steps[] = {
        {VESK_RESULT_LOGIN,
         [&] {
             timed(calls, "vesk_queue_results", [] { vesk_queue_results(1); });
             timed(calls, "vesk_set_login_timeout", [] { vesk_set_login_timeout(80000); });
             timed(calls, "vesk_login", [] { vesk_login("Steam", "", "", ""); });
             timed(calls, "vesk_cancel_login", [] { vesk_cancel_login(); });
             timed(calls, "vesk_login", [] { vesk_login("Ferno", "", "", ""); });
         }},
        {VESK_RESULT_REFRESHED,
         [&] { timer = std::thread([] { VESKLoginManager::MakeRefreshTask()->DoTask(); }); }},
        {VESK_RESULT_BASE, [&] { timed(calls, "vesk_logout", [] { vesk_logout("", "", 0); }); }},
    };
    double longest = 0;
    for (const auto& step : steps) {
        bool begins = true;
        longest = std::max(longest, frames(length, workNs, [&] {
                               if (std::exchange(begins, false)) {
                                   step.second();
                               }
                               return look(calls) == step.first;
                           }));
    }
    timer.join();
    return longest;
}

void measureFrameCalls(Figures& figures) {
    Calls calls;
    visit(calls, kShortFrame, 0);
    std::vector<double> all;
    for (auto& [function, times] : calls) {
        all.insert(all.end(), times.begin(), times.end());
        const double longest = *std::max_element(times.begin(), times.end());
        figures.value(("longest call of " + function + ", slow disk").c_str(), "us", longest / 1e3,
                      atMost(1000));
    }
    std::sort(all.begin(), all.end());
    const std::string name =
        "99.9th percentile of " + std::to_string(all.size()) + " calls, slow disk";
    figures.value(name.c_str(), "us", all[all.size() - 1 - all.size() / 1000] / 1e3, atMost(100));
}

/// In turns, and the better of each: what else the machine does lengthens frames as well.
void measureFrames(Figures& figures) {
    Pair longest = {1e12, 1e12};
    for (int turn = 0; turn < 2; ++turn) {
        Calls calls;
        const double start = nowNs();
        longest.measured = std::min(longest.measured, visit(calls, kFrame, kWorkNs));
        vesk_wait_idle(30000);
        const double end = 2 * nowNs() - start;
        longest.baseline =
            std::min(longest.baseline, frames(kFrame, kWorkNs, [&] { return nowNs() >= end; }));
    }
    figures.ratio("longest frame of a 60 Hz loop that logs in and out, slow disk",
                  "the same loop without the SDK", "ns", longest, atMost(1.1));
}

void measure(Figures& figures) {
    slowDisk(kDisk);
    measureFrameCalls(figures);
    measureFrames(figures);
    slowDisk(milliseconds(0));
    vesk_wait_idle(30000);
    vesk_login_state state = emptyState();
    vesk_result* result = nullptr;
    const Pair costs = microbench(
        "frame", [&] { vesk_state(&state); }, [&] { vesk_next_result(&result); });
    figures.value("vesk_state", "us", costs.baseline / 1e3, atMost(0.2));
    figures.value("vesk_next_result, nothing waits", "us", costs.measured / 1e3, atMost(0.2));
}

const Group frameGroup("frames", &measure);

} // namespace
} // namespace vesk::bench
