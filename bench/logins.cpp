#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "child.h"
#include "game.h"
#include "groups.h"
#include "loggedlines.h"
#include "microbench.h"
#include "support/backendcontrol.h"
#include "support/files.h"

using namespace Braxel::VESK;

namespace vesk::bench {

namespace {

constexpr int kTurns = 300;
constexpr int kBundleTurns = 120;
constexpr int kReturnTurns = 500;

bool isSecure() {
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
void measureWithLines(Figures& figures, Game& game, const char* channel, const std::string& title) {
    const auto requests = game.requestsOf(channel);
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
    const std::string baseline =
        baselineName(requests) + " and " + std::to_string(lines.count()) + " raw appends";
    figures.ratio(title.c_str(), baseline.c_str(), "ns", times, reported());
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
    measureChannel(figures, game, "Steam", "Steam login, HTTPS, the system's CA bundle",
                   atMost(1.10), kBundleTurns);
}

/// What the game's own thread logs while it is inside Login.
LoggedLines linesOfLogin(Game& game, const char* channel) {
    // The answer comes late, so that only the beginning of the request is logged meanwhile.
    const std::string answer =
        R"({"path":"auth/)" +
        std::string(game.requestsOf(channel).size() == 1 ? "login" : "pcprecode") +
        R"(","delay_ms":300})";
    test::callControlPort(test::environment("VESK_TEST_CONTROL_URL") + "/next", &answer);
    LoggedLines lines(game.log(), [&] { Game::startLogin(channel); },
                      {"CreateRequestThreadCallBack", "SendPostRequest", "SetTransport"});
    game.waitForResult();
    waitForThreads(2); // the timer is left of a login that has ended
    Game::logout(channel);
    return lines;
}

void measureReturn(Figures& figures, Game& game, const char* channel, const char* name) {
    const LoggedLines lines = linesOfLogin(game, channel);
    const Pair times = takeTurns(
        kReturnTurns,
        [&] {
            const double start = nowNs();
            lines.logAgain();
            onNewThread([] {});
            const double took = nowNs() - start;
            waitForThreads(1);
            return took;
        },
        [&] {
            const double returned = game.login(channel).returned;
            Game::logout(channel);
            return returned;
        });
    const std::string baseline =
        "one detached thread and the same " + std::to_string(lines.count()) + " log lines";
    figures.ratio(name, baseline.c_str(), "ns", times, atMost(2.0));
    Game::clearBackend();
}

void measureGetLoginRet(Figures& figures, Game& game) {
    game.login("Steam");
    waitForThreads(2);
    // The timer is there, but has some lines to log before it sleeps.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    VESKLoginRet held;
    const auto get = [&held] { VESKLogin::GetLoginRet(held); };
    const LoggedLines lines(game.log(), get);
    const std::string baseline = "its " + std::to_string(lines.count()) + " log lines alone";
    figures.ratio("GetLoginRet from memory", baseline.c_str(), "ns",
                  microbench(
                      "getloginret", [&lines] { lines.logAgain(); }, get),
                  atMost(1.2));
}

} // namespace

void measureLogins(Figures& figures) {
    Game game;
    game.login("Steam");
    Game::logout("Steam");
    const Goal goal = atMost(isSecure() ? 1.10 : 2.0);
    const std::string how = isSecure() ? ", HTTPS" : ", plain HTTP";
    for (const auto& [channel, name] :
         {std::pair("Steam", "Steam login"), std::pair("Ferno", "messenger login")}) {
        measureChannel(figures, game, channel, name + how, goal, kTurns);
        measureWithLines(figures, game, channel, name + how + ", with its lines");
    }
    if (isSecure()) {
        measureWithBundle(figures, game);
        return;
    }
    measureReturn(figures, game, "Steam", "return of Login (Steam)");
    measureReturn(figures, game, "Ferno", "return of Login (messenger)");
    measureGetLoginRet(figures, game);
}

void measureRest(Figures& figures) {
    // A process of its own that has done the same request without the SDK.
    const double plain = inChild([] {
        const std::string url = test::environment("VESK_TEST_BACKEND_URL");
        const Game game;
        timePlainly(game.requestsOf("Steam"));
        return residentBytes();
    });
    Game game;
    figures.value("threads at rest before a login", "threads",
                  static_cast<double>(threadCount() - 1), atMost(0));
    game.login("Steam");
    waitForThreads(2);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    figures.value("threads at rest after a login", "threads",
                  static_cast<double>(threadCount() - 1), atMost(1));
    figures.ratio("resident memory after a login", "after the same POST by plain libcurl", "bytes",
                  {plain, residentBytes()}, reported());
}

} // namespace vesk::bench
