#include <chrono>
#include <string>
#include <thread>

#include "child.h"
#include "game.h"
#include "groups.h"
#include "loggedlines.h"
#include "microbench.h"
#include "support/backendcontrol.h"
#include "support/files.h"
#include "support/system.h"

using namespace Braxel::VESK;

namespace vesk::bench {
namespace {

constexpr int kReturnTurns = 500;

double resident() {
    return static_cast<double>(test::countProcess().residentBytes);
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

void measureCalls(Figures& figures) {
    Game game;
    game.login("Steam");
    Game::logout("Steam");
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
        return resident();
    });
    Game game;
    figures.value("threads at rest before a login", "threads",
                  static_cast<double>(test::countProcess().threads - 1), atMost(0));
    game.login("Steam");
    waitForThreads(2);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    figures.value("threads at rest after a login", "threads",
                  static_cast<double>(test::countProcess().threads - 1), atMost(1));
    figures.ratio("resident memory after a login", "after the same POST by plain libcurl", "bytes",
                  {plain, resident()}, reported());
}

const Group callGroup("calls", &measureCalls);
const Group restGroup("rest", &measureRest);

} // namespace
} // namespace vesk::bench
