// The game's main loop under whatever the game does: each call has its one answer, whoever cancels
// is not logged in, and who waits until all is idle may leave.
#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <vector>

#include "faults/faulttest.h"
#include "vesk/vesk_mainloop.h"

namespace vesk::test {
namespace {

constexpr int kLeft = 10;    // the code that a game ends with
constexpr int kHeldMs = 150; // how long an answer is held back

/// How often: the slow cases say it themselves.
int rounds(int usually) {
    const char* const told = std::getenv("VESK_CASE_ROUNDS");
    return told != nullptr ? std::atoi(told) : usually;
}

struct Taken {
    int32_t kind;
    uint64_t request;
    int32_t code;
};

void poll(std::vector<Taken>& to) {
    vesk_result* result = nullptr;
    while (vesk_next_result(&result) == 1) {
        const int32_t code = result->login != nullptr  ? result->login->ret_code
                             : result->base != nullptr ? result->base->ret_code
                                                       : result->qr_code->ret_code;
        to.push_back({result->kind, result->request, code});
        vesk_result_free(result);
    }
}

Taken nextResult() {
    std::vector<Taken> taken;
    waitUntil("a result", [&] { return poll(taken), !taken.empty(); });
    EXPECT_EQ(taken.size(), 1u);
    return taken.front();
}

vesk_login_state state() {
    vesk_login_state now = {};
    now.struct_size = sizeof now;
    EXPECT_EQ(vesk_state(&now), 1);
    return now;
}

/// A thread of the game.
struct Player {
    std::vector<Taken> taken;
    size_t logins = 0;
    size_t logouts = 0;

    void login(const char* channel) {
        vesk_login(channel, "", "", "");
        ++logins;
    }
    void play(uint32_t seed, bool switches) {
        std::mt19937 random(seed);
        for (uint32_t steps = random() % 8 + 1; steps > 0; --steps) {
            const uint32_t what = random() % (switches ? 14 : 11);
            if (what < 5) {
                login(what < 3 ? "Steam" : "Ferno");
            } else if (what == 5) {
                login("Discord");
            } else if (what == 6) {
                vesk_cancel_login();
            } else if (what == 7) {
                vesk_logout("", "", 0);
                ++logouts;
            } else if (what == 8) {
                vesk_set_login_timeout(random() % 2 == 0 ? 0 : random() % 40 + 1);
            } else if (what < 11) {
                std::this_thread::sleep_for(std::chrono::milliseconds(random() % 12));
            } else if (what == 11) {
                vesk_auto_login();
                ++logins;
            } else {
                vesk_queue_results(what == 12 ? 1 : 0);
            }
            poll(taken);
        }
    }
    /// What one thread takes comes in the order of the calls, but for what is refused at once.
    void expectOrder() const {
        uint64_t ended = 0;
        for (const Taken& result : taken) {
            if (result.request != 0 && result.code != VESK_UNKNOWN_CHANNEL &&
                (result.kind == VESK_RESULT_LOGIN || result.kind == VESK_RESULT_QR_CODE)) {
                EXPECT_GT(result.request, ended) << "of kind " << result.kind;
                ended = result.kind == VESK_RESULT_LOGIN ? result.request : ended;
            }
        }
    }
};

struct MainLoopFaults : FaultTest {
    /// Lets threads of the game play, then ends all that runs.
    void playSequence(uint32_t seed, bool switches) {
        std::mt19937 random(seed);
        EXPECT_EQ(vesk_queue_results(1), 1);
        const char* const scripts[] = {"1:qr:u,2:success", "1:qr:u", "1:fail:1:1",
                                       "1:qr:u,1:scanned,9:success,1:success"};
        ferno.script("on_qrcode=" + std::string(scripts[random() % 4]) + "\n");
        const uint64_t before = state().request;
        std::vector<Player> players(random() % 8 + 1);
        std::vector<std::thread> threads;
        threads.reserve(players.size());
        for (Player& player : players) {
            threads.emplace_back([&player, seed = random(), switches] {
                player.play(static_cast<uint32_t>(seed), switches);
            });
        }
        std::for_each(threads.begin(), threads.end(), std::mem_fn(&std::thread::join));
        EXPECT_EQ(vesk_queue_results(1), 1);
        EXPECT_EQ(vesk_wait_idle(15000), 1);
        vesk_cancel_login();
        EXPECT_EQ(vesk_wait_idle(15000), 1);
        poll(players.front().taken);
        expectAccounts(players, before, switches);
    }

    /// What was answered, by the number of the call.
    static std::map<uint64_t, Taken> answersOf(const std::vector<Player>& players, uint64_t before,
                                               bool switches) {
        std::map<uint64_t, Taken> answers;
        for (const Player& player : players) {
            for (const Taken& result : player.taken) {
                if (result.request == 0) {
                    EXPECT_TRUE(switches) << "answers a call that was not made: kind "
                                          << result.kind << ", code " << result.code;
                } else if (result.kind <= VESK_RESULT_BASE) {
                    EXPECT_TRUE(answers.emplace(result.request, result).second)
                        << "answered twice: " << result.request - before;
                }
            }
        }
        return answers;
    }

    static void expectAccounts(const std::vector<Player>& players, uint64_t before, bool switches) {
        const std::map<uint64_t, Taken> answers = answersOf(players, before, switches);
        size_t calls[2] = {0, 0};
        for (const Player& player : players) {
            player.expectOrder();
            calls[0] += player.logins;
            calls[1] += player.logouts;
        }
        const vesk_login_state now = state();
        EXPECT_EQ(answers.size(), now.request - before) << "calls without an answer";
        EXPECT_TRUE(answers.empty() || (answers.begin()->first == before + 1 &&
                                        answers.rbegin()->first == now.request));
        if (switches) {
            return; // some were not asked for in this mode
        }
        const auto isLogin = [](const auto& it) { return it.second.kind == VESK_RESULT_LOGIN; };
        const auto logins = std::count_if(answers.begin(), answers.end(), isLogin);
        EXPECT_EQ(static_cast<size_t>(logins), calls[0]);
        EXPECT_EQ(answers.size(), calls[0] + calls[1]);
        const auto last = std::find_if(answers.rbegin(), answers.rend(), [&](const auto& it) {
            return isLogin(it) && it.second.code != VESK_UNKNOWN_CHANNEL; // which changes nothing
        });
        if (last != answers.rend() && last->second.code != VESK_SUCCESS) {
            EXPECT_EQ(now.state, VESK_SIGNED_OUT) << "the last login: " << last->second.code;
        }
    }

    const Messenger ferno{game, "ferno", "frlogin.dll"};
};

TEST_F(MainLoopFaults, RandomSequencesHaveOneAnswerEach) {
    const int count = rounds(300);
    for (int i = 0; i < count && !HasFailure(); ++i) {
        SCOPED_TRACE("sequence " + std::to_string(i));
        // Last, as what comes late for a login of the observer's goes on into the next sequence.
        playSequence(static_cast<uint32_t>(i), i >= count / 3 * 2);
        countRow("a sequence", observer.loginCount());
    }
}

TEST_F(MainLoopFaults, CancelledLoginsLogNobodyInWhereverTheAnswerIsHeldBack) {
    const char* const scanned = "on_qrcode=1:qr:u,1:success\n";
    const Answer preCode = {"auth/pcprecode", R"({"ret":0,"precode":"p"})"};
    const Answer slowPreCode = {preCode.path, preCode.body, 200, kHeldMs};
    const struct {
        const char* channel;
        const char* script;
        Answer held;
        bool hasCode; ///< cancels when the code is there, not when the request is
        size_t logouts;
    } steps[] = {
        {"Steam", "", loginAnswer("1", "", kHeldMs), false, 1},
        {"Steam", "", {"auth/login", "gone", 404, kHeldMs}, false, 0},
        {"Ferno", scanned, slowPreCode, false, 0},
        {"Ferno", scanned, {preCode.path, R"({"ret":3})", 200, kHeldMs}, false, 0},
        {"Ferno", "on_qrcode=500:qr:u,1:success\n", preCode, false, 0},
        {"Ferno", "on_qrcode=1:qr:u,500:success\n", preCode, true, 0},
        {"Ferno", scanned, loginAnswer("1", "", kHeldMs), false, 1},
    };
    const int count = rounds(21);
    int cancelled = 0;
    EXPECT_EQ(vesk_queue_results(1), 1);
    std::vector<Taken> taken;
    for (int i = 0; i < count && !HasFailure(); ++i) {
        const auto& step = steps[i % std::size(steps)];
        SCOPED_TRACE("step " + std::to_string(i % std::size(steps)));
        backend.clear();
        backend.next(step.held);
        ferno.script(step.script);
        vesk_login(step.channel, "", "", "");
        backend.waitForRequest(step.held.path);
        if (step.hasCode) {
            EXPECT_EQ(nextResult().kind, VESK_RESULT_QR_CODE);
        }
        const bool isInTime = vesk_cancel_login() == 1;
        if (step.held.delayMs == 0) { // the component goes on, and the SDK does not wait for it
            std::this_thread::sleep_for(std::chrono::milliseconds(600));
        }
        EXPECT_EQ(vesk_wait_idle(15000), 1);
        taken.clear();
        poll(taken);
        ASSERT_EQ(taken.size(), 1u);
        if (!isInTime) { // on a busy machine: it had ended, and stays as it is
            EXPECT_NE(taken[0].code, VESK_LOGIN_CANCELLED);
            continue;
        }
        ++cancelled;
        EXPECT_EQ(taken[0].code, VESK_LOGIN_CANCELLED);
        EXPECT_EQ(state().state, VESK_SIGNED_OUT);
        EXPECT_EQ(readFile(game.loginCache()), "");
        EXPECT_EQ(backend.requests("auth/login").size(), step.held.path == "auth/login" ? 1u : 0u);
        EXPECT_EQ(backend.requests("auth/logout").size(), step.logouts);
        countRow("a cancelled login", 0);
    }
    EXPECT_GT(cancelled, count / 2);
}

TEST_F(MainLoopFaults, LogoutReachesTheBackendBeforeTheGameLeaves) {
    const Messenger messenger{game, VESK_MESSENGER_SIMULATOR, VESK_MESSENGER_FILE};
    const int count = rounds(5);
    for (int i = 0; i < count && !HasFailure(); ++i) {
        for (const char* const channel : {"Steam", VESK_MESSENGER}) {
            SCOPED_TRACE(channel);
            expectGame(kLeft, [&] {
                vesk_queue_results(1);
                vesk_login(channel, "", "", "");
                waitUntil("the login", [] {
                    std::vector<Taken> taken;
                    return poll(taken), state().state == VESK_SIGNED_IN;
                });
                vesk_logout("", "", 0);
                return vesk_wait_idle(3000) == 1 ? kLeft : 1;
            });
            countRow("a game that leaves", 0);
        }
    }
    // Not before: on Windows each game comes by here on the way to its own row.
    EXPECT_EQ(backend.requests("auth/logout").size(), 2u * static_cast<size_t>(count));
}

} // namespace
} // namespace vesk::test
