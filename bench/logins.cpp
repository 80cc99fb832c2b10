#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "game.h"
#include "groups.h"
#include "loggedlines.h"
#include "support/backendcontrol.h"
#include "support/files.h"

using namespace Braxel::VESK;

namespace vesk::bench {

namespace {

constexpr int kTurns = 300;
constexpr int kBundleTurns = 120;
constexpr int kFarTurns = 40;

bool isBackendSecure() {
    return bench::isSecure(test::environment("VESK_TEST_BACKEND_URL"));
}

double logInAndOut(Game& game, const char* channel) {
    const double total = game.login(channel).total;
    Game::logout(channel);
    return total;
}

std::string baselineName(const std::vector<PlainRequest>& requests) {
    return requests.size() == 1 ? "the same POST by plain libcurl"
                                : "the same two POSTs by plain libcurl";
}

void measureChannel(Figures& figures, Game& game, const char* channel, const std::string& title,
                    const Goal& goal, int turns) {
    const auto requests = game.requestsOf(channel);
    const Pair times = takeTurns(
        turns, [&] { return timePlainly(requests); }, [&] { return logInAndOut(game, channel); });
    figures.ratio(title.c_str(), baselineName(requests).c_str(), "ns", times, goal);
    Game::clearBackend();
}

/// Beside the least that a login can take each of whose lines is opened, written and closed.
void measureWithLines(Figures& figures, Game& game, const char* channel, const std::string& title,
                      const Goal& goal) {
    const auto requests = sharing(game.requestsOf(channel));
    const LoggedLines lines(game.log(), [&] {
        game.login(channel);
        waitForThreads(2);
    });
    Game::logout(channel);
    const std::string plainLog = game.log().string() + ".plain";
    const Pair times = takeTurns(
        kTurns,
        [&] {
            const double start = nowNs();
            lines.appendPlainly(plainLog);
            const double logged = nowNs() - start;
            return logged + timePlainly(requests);
        },
        [&] { return logInAndOut(game, channel); });
    const std::string baseline = baselineName(requests) +
                                 (isBackendSecure() ? ", sessions shared, and " : " and ") +
                                 std::to_string(lines.count()) + " raw appends";
    figures.ratio(title.c_str(), baseline.c_str(), "ns", times, goal);
    Game::clearBackend();
}

/// With as many authorities as a public backend's client trusts; libcurl reads them each time.
void measureWithBundle(Figures& figures, Game& game) {
    const std::string bundle = test::readFile("/etc/ssl/certs/ca-certificates.crt");
    const std::string file = test::environment("VESK_TEST_FOLDER") + "/cacert.pem";
    if (bundle.empty()) {
        return;
    }
    test::writeFile(file, test::readFile(file) + bundle);
    std::this_thread::sleep_for(std::chrono::seconds(3)); // as scripts/bench says
    measureChannel(figures, game, "Steam", "Steam login, HTTPS, the system's CA bundle",
                   atMost(0.15), kBundleTurns);
}

void measureLogins(Figures& figures) {
    Game game;
    game.login("Steam");
    Game::logout("Steam");
    const std::string how = isBackendSecure() ? ", HTTPS" : ", plain HTTP";
    const Goal withLines = atMost(isBackendSecure() ? 1.05 : 1.25);
    const struct {
        const char* channel;
        std::string name;
        Goal goal;
    } channels[] = {{"Steam", "Steam login", atMost(0.90)},
                    {"Ferno", "messenger login", atMost(0.85)}};
    for (const auto& [channel, name, goal] : channels) {
        measureChannel(figures, game, channel, name + how, isBackendSecure() ? goal : reported(),
                       kTurns);
        measureWithLines(figures, game, channel, name + how + ", with its lines", withLines);
    }
    if (isBackendSecure()) {
        measureWithBundle(figures, game);
    }
}

void measureFarLogins(Figures& figures) {
    Game game;
    const std::string version = R"({"version":"1.2"})";
    test::callControlPort(test::environment("VESK_TEST_CONTROL_URL") + "/tls", &version,
                          {"Content-Type: application/json"});
    measureChannel(figures, game, "Steam", "Steam login, HTTPS, TLS 1.2, 40 ms away", atMost(0.80),
                   kFarTurns);
}

const Group loginGroup("logins", &measureLogins);
const Group farGroup("far", &measureFarLogins);

} // namespace
} // namespace vesk::bench
