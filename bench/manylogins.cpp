#include <filesystem>
#include <vector>

#include "game.h"
#include "groups.h"
#include "support/system.h"

namespace vesk::bench {

namespace {

constexpr int kLogins = 10000;
constexpr int kWindow = 100; ///< logins that are timed at either end
constexpr int kClearEvery = 250;

struct State {
    Pair times; ///< the window's logins, and as many plain requests in between
    test::ProcessCounts held;
};

/// Logs in again and again, as a game does whose players change, and never out.
void login(Game& game, int count) {
    for (int i = 0; i < count; ++i) {
        game.login("Steam");
        if (i % kClearEvery == 0) {
            Game::clearBackend();
            std::filesystem::resize_file(game.log(), 0);
        }
    }
}

State measureWindow(Game& game, const std::vector<PlainRequest>& requests) {
    State state = {};
    state.times = takeTurns(
        kWindow,
        [&] {
            const double start = nowNs();
            requests.front().post();
            return nowNs() - start;
        },
        [&] { return game.login("Steam").total; });
    waitForThreads(2);
    state.held = test::countProcess();
    return state;
}

void measureManyLogins(Figures& figures) {
    Game game;
    const auto requests = game.requestsOf("Steam");
    login(game, kWindow);
    const State early = measureWindow(game, requests);
    login(game, kLogins - 2 * kWindow);
    const State late = measureWindow(game, requests);
    figures.ratio(
        "the 10,000th login: time", "the 100th, both beside plain libcurl", "",
        {early.times.measured / early.times.baseline, late.times.measured / late.times.baseline},
        atMost(1.05));
    const auto more = [&](size_t test::ProcessCounts::*count) {
        return static_cast<double>(late.held.*count) - static_cast<double>(early.held.*count);
    };
    figures.value("the 10,000th login: memory more than after the 100th", "MiB",
                  more(&test::ProcessCounts::residentBytes) / (1024.0 * 1024.0), atMost(1));
    figures.value("the 10,000th login: descriptors more than after the 100th", "descriptors",
                  more(&test::ProcessCounts::descriptors), atMost(0));
    figures.value("the 10,000th login: threads more than after the 100th", "threads",
                  more(&test::ProcessCounts::threads), atMost(0));
}

const Group manyLoginGroup("many", &measureManyLogins);

} // namespace
} // namespace vesk::bench
