#include "faults/faulttest.h"

namespace vesk::test {
namespace {

constexpr int kEnded = 10; // the code that the game ends with

struct ShutdownFaults : FaultTest {
    /// Starts that many logins and waits for four requests.
    void startLogins(size_t count, int delayMs) {
        const size_t before = backend.requests("auth/login").size(); // of other processes
        for (size_t i = 0; i < count; ++i) {
            backend.next(loginAnswer("A", "", delayMs));
        }
        for (size_t i = 0; i < count; ++i) {
            startLogin();
        }
        backend.waitForRequest("auth/login", before + 4);
    }

    const Messenger ferno{game, "ferno", "frlogin.dll"};
};

TEST_F(ShutdownFaults, ProcessEndsWhateverIsUnderWay) {
    const struct {
        const char* name;
        int rounds;
        std::function<void()> begin;
    } rows[] = {
        {"requests in flight and queued", 2, [this] { startLogins(6, 1000); }},
        {"an answer that comes just now", 15,
         [this] {
             startLogins(4, 20);
             std::this_thread::sleep_for(std::chrono::milliseconds(std::rand() % 30));
         }},
        {"a timer asleep", 2, [this] { login(); }},
        {"a component that calls back", 4,
         [this] {
             std::string steps = "on_qrcode=0:qr:u";
             for (int i = 0; i < 400; ++i) {
                 steps += ",0:qr:u,0:scanned";
             }
             ferno.script("threads=4\n" + steps);
             startLogin("Ferno");
             observer.nextQrCode();
         }},
    };
    for (const auto& row : rows) {
        for (const bool uninstalls : {false, true}) {
            for (int round = 0; round < row.rounds; ++round) {
                SCOPED_TRACE(row.name);
                expectGame(kEnded, [&] {
                    std::srand(static_cast<unsigned>(round));
                    row.begin();
                    if (uninstalls) {
                        VESKLogin::UnInstall();
                    }
                    return kEnded;
                });
                countRow(row.name, 0);
            }
        }
    }
}

} // namespace
} // namespace vesk::test
