#include "faults/faulttest.h"

namespace vesk::test {
namespace {

constexpr int kLeft = 10; // the code that the game ends with

struct ShutdownFaults : FaultTest {
    void start(const char* channel, size_t logins = 1) {
        FaultTest::start();
        for (size_t i = 0; i < logins; ++i) {
            VESKLogin::Login(channel, "", "", "");
        }
    }
    void waitForFour() { backend.waitForRequest("auth/login", mBefore + 4); }
    void scriptLogins(size_t count, int delayMs) {
        mBefore = backend.requests("auth/login").size();
        for (size_t i = 0; i < count; ++i) {
            backend.next({"auth/login", loginAnswer("A").body, 200, delayMs});
        }
    }

    const Messenger ferno{game, "ferno", "frlogin.dll"};

private:
    size_t mBefore = 0; // requests of other processes
};

TEST_F(ShutdownFaults, ProcessEndsWhateverIsUnderWay) {
    const struct {
        const char* name;
        int rounds;
        std::function<void()> begin;
    } rows[] = {
        {"requests in flight and queued", 2,
         [this] {
             scriptLogins(6, 1000);
             start("Steam", 6);
             waitForFour();
         }},
        {"an answer that comes just now", 15,
         [this] {
             scriptLogins(4, 20);
             start("Steam", 4);
             waitForFour();
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
             start("Ferno");
             observer.nextQrCode();
         }},
    };
    for (const auto& row : rows) {
        for (const bool uninstalls : {false, true}) {
            for (int round = 0; round < row.rounds; ++round) {
                SCOPED_TRACE(row.name);
                expectGame(kLeft, [&] {
                    std::srand(static_cast<unsigned>(round));
                    row.begin();
                    if (uninstalls) {
                        VESKLogin::UnInstall();
                    }
                    return kLeft;
                });
                countRow(row.name, 0);
            }
        }
    }
}

} // namespace
} // namespace vesk::test
