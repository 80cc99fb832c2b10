// The game's main loop under whatever the game does: each call has its one answer. This program has
// the SDK's sources compiled in, so that tokens are refreshed whenever it wants.
#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <random>
#include <vector>

#include "common/veskinnerrecords.h"
#include "faults/mainlooptest.h"
#include "login/veskloginmanager.h"
#include "module/veskmodule.h"
#include "platformimpl/login/veskloginimpl.h"
#include "vesk/veskerror.h"

namespace vesk::test {
namespace {

/// A thread of the game.
struct Player {
    std::vector<Taken> taken;
    size_t logins = 0;
    size_t logouts = 0;

    void login(const char* channel) {
        vesk_login(channel, "", "", "");
        ++logins;
    }
    /// As the background does when the token is about to expire.
    static void refresh() {
        InnerLoginRet held;
        if (VESKLoginManager::GetInstance()->GetLoginRet(held)) {
            VESKLoginManager::GetInstance()->NoteRefresh();
            VESKLoginIMPL::GetInstance()->RefreshToken(held);
        }
    }
    void play(uint32_t seed, bool switches) {
        std::mt19937 random(seed);
        for (uint32_t steps = random() % 8 + 1; steps > 0; --steps) {
            const uint32_t what = random() % (switches ? 15 : 12);
            if (what < 5) {
                login(what < 2 ? "Steam" : "Ferno");
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
                std::this_thread::sleep_for(std::chrono::milliseconds(random() % 24));
                refresh();
            } else if (what == 11) {
                refresh();
            } else if (what == 12) {
                vesk_auto_login();
                ++logins;
            } else {
                vesk_queue_results(what == 13 ? 1 : 0);
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

struct MainLoopSequences : FaultTest {
    MainLoopSequences() {
        VESKModule::UsePath((game.path() / "VESKCore.dll").make_preferred().string());
    }
    /// Lets threads of the game play, then ends all that runs.
    void playSequence(uint32_t seed, bool switches) {
        std::mt19937 random(seed);
        EXPECT_EQ(vesk_queue_results(1), 1);
        const char* const scripts[] = {"1:qr:u,2:success", "1:qr:u", "1:fail:1:1",
                                       "1:qr:u,1:scanned,9:success,1:success",
                                       "1:success,0:qr:u,0:qr:u,0:qr:u,1:qr:u,1:qr:u,1:qr:u"};
        const char* const tokens[] = {"1:token", "9:token", "1:token_fail:3:4"};
        ferno.script("on_qrcode=" + std::string(scripts[random() % std::size(scripts)]) +
                     "\non_token=" + tokens[random() % std::size(tokens)] + "\n");
        const uint64_t before = state().request;
        Player::refresh(); // the answer crosses what follows
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
        for (const Player& player : players) {
            for (const Taken& result : player.taken) {
                if (result.kind == VESK_RESULT_REFRESHED && result.request > before) {
                    EXPECT_EQ(answers[result.request].code, VESK_SUCCESS) << "has a token";
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

TEST_F(MainLoopSequences, RandomOnesHaveOneAnswerEach) {
    const int count = rounds(300);
    for (int i = 0; i < count && !HasFailure(); ++i) {
        SCOPED_TRACE("sequence " + std::to_string(i));
        // Last, as what comes late for a login of the observer's goes on into the next sequence.
        playSequence(static_cast<uint32_t>(i), i >= count / 3 * 2);
        countRow("a sequence", observer.loginCount());
    }
}

/// The moment between is short: the case stores the success itself.
TEST_F(MainLoopSequences, WhatIsKnownOfALoginBeforeItsSuccessIsToldBehindIt) {
    EXPECT_EQ(vesk_queue_results(1), 1);
    const std::string expired = ",\"token_expire_time\":1";
    backend.next(loginAnswer("1", expired, 1000));
    ferno.script("on_qrcode=1:success,300:qr:u\n");
    vesk_login("Ferno", "", "", "");
    backend.waitForRequest("auth/login");
    VESKCurrentLogin& current = VESKLoginManager::GetInstance()->Current();
    std::string login;
    current.Is("", login);
    EXPECT_TRUE(current.Close(login));
    vesk_auto_login(); // nothing is stored for it
    std::vector<Taken> taken;
    poll(taken);
    taken.clear(); // on a busy machine the code has come before
    waitForLogLine("[ " + login + " ] convert InnerQrCodeRet to VESKQrCodeRet finish");
    current.Reopen(login);
    const auto pollUntil = [&](size_t count) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (taken.size() < count && std::chrono::steady_clock::now() < end) {
            poll(taken);
        }
    };
    pollUntil(3);
    backend.next(loginAnswer("2", expired));
    VESKLogin::Login("Steam", "", "", ""); // by the contract's own facade, which knows no numbers
    pollUntil(5);
    const std::vector<Taken> expected = {{VESK_RESULT_LOGIN, 1, VESK_SUCCESS},
                                         {VESK_RESULT_LOGIN, 2, VESKError::NO_STORED_LOGIN},
                                         {VESK_RESULT_REFRESHED, 1, VESK_TOKEN_EXPIRED},
                                         {VESK_RESULT_LOGIN, 0, VESK_SUCCESS},
                                         {VESK_RESULT_REFRESHED, 0, VESK_TOKEN_EXPIRED}};
    EXPECT_EQ(taken, expected);
}

} // namespace
} // namespace vesk::test
