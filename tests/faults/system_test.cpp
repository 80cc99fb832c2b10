#include <ctime>
#include <fcntl.h>
#include <set>
#include <sys/resource.h>

#include "faults/faulttest.h"
#include "faults/systemfaults.h"
#include "vesk/vesk_mainloop.h"

namespace vesk::test {

namespace {

struct ClockFaults : FaultTest {
    ClockFaults() {
        SystemFaults::clockAhead = 0;
        settle();
    }

    size_t ticks() const { return game.logLines("on task timer"); }
    void waitForTick(size_t number) const {
        waitUntil(
            "the tick", [&] { return ticks() >= number; }, std::chrono::seconds(3));
    }
    /// Logs in, with a token for an hour; the timer then sleeps for a minute.
    void loginWithTimer() {
        const std::string expiry = std::to_string(std::time(nullptr) + 3600);
        // Whatever the backend thinks of the time of the request.
        backend.next(loginAnswer("A", ",\"token_expire_time\":" + expiry));
        EXPECT_EQ(faulty("a login under this clock").retCode, VESKError::SUCCESS);
        SystemFaults::waitForQuiet();
    }

    const int64_t kDay = 86400;
    /// The first seconds that a signed 32-bit number does not hold.
    const int64_t kPast2038 = (int64_t{1} << 31) + 1000 - std::time(nullptr);
    SystemFaults system;
};

TEST_F(ClockFaults, JumpExpiresWhatWaitsForAConnection) {
    for (const int64_t ahead : {int64_t{0}, kDay, -kDay, kPast2038}) {
        SCOPED_TRACE(ahead);
        for (int i = 0; i < 4; ++i) { // as many as run at once; the next login supersedes each
            backend.next({"auth/login", "{}", 200, 500});
            VESKLogin::Login("Steam", "", "", "");
        }
        VESKLogin::Login("Steam", "", "", "");
        SystemFaults::clockAhead = ahead;
        const VESKLoginRet ret = observer.nextLogin().ret;
        SystemFaults::clockAhead = 0;
        EXPECT_EQ(ret.retCode, ahead == 0 ? 0 : 4);
        EXPECT_EQ(ret.thirdCode, ahead == 0 ? 0 : 4);
        countRow("a request that waits");
        SystemFaults::waitForQuiet();
    }
    expectWhole();
}

TEST_F(ClockFaults, JumpWakesTheTimerOnceAndMayExpireTheToken) {
    const struct {
        int64_t ahead;
        size_t ticks;
        int32_t retCode;
    } rows[] = {
        {kDay, 1, VESKError::TOKEN_EXPIRED},
        {-kDay, 0, VESKError::SUCCESS},
        // Deliberate: the clock is taken as 32 bits, so that then no token is expired.
        {kPast2038, 1, VESKError::SUCCESS},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.ahead);
        loginWithTimer();
        const size_t before = ticks();
        SystemFaults::clockAhead = row.ahead;
        waitForTick(before + row.ticks);
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        EXPECT_EQ(ticks(), before + row.ticks);
        VESKLoginRet held;
        EXPECT_TRUE(VESKLogin::GetLoginRet(held));
        EXPECT_EQ(held.retCode, row.retCode);
        // The timer of the next login goes by the clock as it is by now.
        loginWithTimer();
        SystemFaults::clockAhead += 61;
        waitForTick(before + row.ticks + 1);
        EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
        SystemFaults::clockAhead = 0;
    }
    expectWhole();
}

TEST_F(ClockFaults, WhatIsKeptOfTlsLivesForAnHour) {
    const struct {
        int64_t ahead;
        size_t resumed; ///< sessions; the third login of each memory is the first to have one
    } rows[] = {{10, 0}, {10, 0}, {10, 1}, {3600, 1}, {3620, 0}, {3620, 0}, {3620, 1}, {10, 0}};
    forgetProxies();
    for (const auto& row : rows) {
        SystemFaults::clockAhead = row.ahead;
        backend.next(loginAnswer("A")); // whatever the time of the request
        const size_t before = backend.resumedSessions();
        faulty("a login under this clock");
        EXPECT_EQ(backend.resumedSessions() - before, row.resumed) << row.ahead;
    }
    SystemFaults::clockAhead = 0;
    expectWhole();
}

constexpr int kMoreThanThePool = 6; // so that a lost client is missed

/// Lets this process have no more than @p free further descriptors, until it goes.
class FewDescriptors {
public:
    explicit FewDescriptors(size_t free) {
        getrlimit(RLIMIT_NOFILE, &mBefore);
        rlimit limit = mBefore;
        limit.rlim_cur = 0;
        for (size_t unused = 0; unused < free || isOpen(limit.rlim_cur); ++limit.rlim_cur) {
            unused += isOpen(limit.rlim_cur) ? 0 : 1;
        }
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &mBefore); }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

private:
    static bool isOpen(rlim_t descriptor) {
        return fcntl(static_cast<int>(descriptor), F_GETFD) != -1;
    }
    rlimit mBefore = {};
};

struct ResourceFaults : FaultTest {
    SystemFaults system;
};

TEST_F(ResourceFaults, RefusedThreadOrHandleIsTheLoginsFailure) {
    settle();
    for (Refusal* refusal : {&SystemFaults::threads, &SystemFaults::curlHandles}) {
        for (int i = 0; i < kMoreThanThePool; ++i) {
            refusal->begin(1);
            const VESKLoginRet ret = faulty("no thread, no handle");
            EXPECT_EQ(refusal->end(), 1);
            EXPECT_EQ(ret.retCode, VESKError::NETWORK_ERROR);
            EXPECT_EQ(ret.thirdCode, 2);
        }
        EXPECT_EQ(faulty("afterwards").retCode, VESKError::SUCCESS);
    }
    // The second thread of a login is the timer.
    SystemFaults::waitForQuiet();
    const size_t before = game.logLines("timer is waiting");
    SystemFaults::threads.begin(2);
    EXPECT_EQ(faulty("no timer").retCode, VESKError::SUCCESS);
    EXPECT_EQ(SystemFaults::threads.end(), 1);
    EXPECT_EQ(game.logLines("timer is waiting"), before);
    expectWhole();
    SystemFaults::waitForQuiet();
    EXPECT_EQ(game.logLines("timer is waiting"), before + 1) << "the next login has one again";
}

TEST_F(ResourceFaults, SmallStacksSuffice) {
    start();
    const auto withStack = [](size_t size) {
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstacksize(&attributes, size);
        return attributes;
    };
    // What threads get that ask for nothing, and what the headers ask a game's thread to have.
    const pthread_attr_t ours = withStack(48 << 10);
    ASSERT_EQ(pthread_setattr_default_np(&ours), 0);
    const pthread_attr_t games = withStack(128 << 10);
    pthread_t game = {};
    const auto visit = [](void* test) -> void* {
        VESKLogin::Login("Steam", "", "", (std::string(250, '[') + std::string(250, ']')).c_str());
        EXPECT_EQ(static_cast<ResourceFaults*>(test)->observer.nextLogin().ret.retCode, 0);
        VESKLogin::Logout("", "", false);
        VESKLogin::UnInstall();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&game, &games, visit, this), 0);
    pthread_join(game, nullptr);
    EXPECT_EQ(observer.nextBase().ret.retCode, VESKError::SUCCESS);
    countRow("a visit on small stacks");
}

TEST_F(ResourceFaults, FewDescriptorsAreTheLoginsFailure) {
    settle();
    int32_t last = -1;
    for (size_t free = 0; free <= 12; ++free) {
        const FewDescriptors few(free);
        const VESKLoginRet ret = faulty(std::to_string(free));
        EXPECT_TRUE(ret.retCode == VESKError::NETWORK_ERROR || ret.retCode == VESKError::SUCCESS)
            << free << " free descriptors: " << ret.retCode;
        EXPECT_TRUE(free != 0 || ret.retCode == VESKError::NETWORK_ERROR);
        last = ret.retCode;
    }
    EXPECT_EQ(last, VESKError::SUCCESS) << "as many as a login needs";
    expectWhole();
}

TEST_F(ResourceFaults, RefusedMemoryCostsAtMostTheLogin) {
    settle();
    size_t silent = 0;
    size_t refused = 0;
    for (const long times : {1, 50}) {
        // One allocation after the other; further apart, the further the login has come.
        for (long nth = 1, hit = 1; hit != 0; nth += 1 + nth / 50) {
            SCOPED_TRACE("allocation " + std::to_string(nth) + ", " + std::to_string(times));
            const size_t before = observer.loginCount();
            SystemFaults::allocations.begin(nth, times);
            VESKLogin::Login("Steam", "", "", "");
            SystemFaults::waitForQuiet();
            hit = SystemFaults::allocations.end();
            const size_t heard = observer.loginCount() - before;
            EXPECT_LE(heard, 1u);
            // Inside the game's call there may be no answer; once that has returned there is one.
            EXPECT_TRUE(heard == 1 || times != 1 || !SystemFaults::allocations.wasElsewhere());
            silent += heard == 0 ? 1 : 0;
            refused += hit != 0 ? 1 : 0;
            if (heard != 0) {
                observer.nextLogin();
            }
            countRow("memory", heard);
            EXPECT_EQ(faulty("afterwards").retCode, VESKError::SUCCESS);
            if (HasFailure()) {
                return;
            }
        }
    }
    std::printf("\n%zu logins with refused memory, %zu of them without an answer\n", refused,
                silent);
    expectWhole();
}

TEST_F(ResourceFaults, RefusedMemoryLosesNoAnswerOfTheMainLoop) {
    const auto requests = [] {
        vesk_login_state now = {};
        now.struct_size = sizeof now;
        EXPECT_EQ(vesk_state(&now), 1);
        return now.request;
    };
    settle();
    ASSERT_EQ(vesk_queue_results(1), 1);
    vesk_set_login_timeout(0);
    bool isRefused = true;
    for (long nth = 1; isRefused && !HasFailure(); nth += 1 + nth / 20) {
        SCOPED_TRACE("allocation " + std::to_string(nth));
        const uint64_t before = requests();
        std::set<uint64_t> answered;
        const auto poll = [&] {
            vesk_result* result = nullptr;
            while (vesk_next_result(&result) == 1) {
                EXPECT_TRUE(result->request == 0 || answered.insert(result->request).second);
                vesk_result_free(result);
            }
        };
        SystemFaults::allocations.begin(nth, 5);
        vesk_login("Steam", "", "", "");
        EXPECT_EQ(vesk_wait_idle(15000), 1);
        poll();
        vesk_logout("", "", 0);
        EXPECT_EQ(vesk_wait_idle(15000), 1);
        poll();
        isRefused = SystemFaults::allocations.end() != 0;
        poll(); // what had no memory before
        // A call that had none itself has no number, and no answer.
        EXPECT_EQ(answered.size(), requests() - before);
        countRow("memory, main loop", 0);
    }
}

TEST_F(ResourceFaults, CallbacksWithoutMemoryThrowNothingIntoTheComponent) {
    const Messenger ferno(game, "ferno", "frlogin.dll");
    ferno.script("on_qrcode=500:qr:u,0:success,0:kickout:1,0:exception\n");
    start();
    VESKLogin::Login("Ferno", "", "", "");
    waitUntil("the request", [&] { return !ferno.componentLines("req_qrcode").empty(); });
    SystemFaults::waitForQuiet();
    SystemFaults::allocations.begin(1, 1000);
    waitUntil("the callbacks", [&] { return ferno.componentLines("\"callback\"").size() == 4; });
    EXPECT_GE(SystemFaults::allocations.end(), 4);
    EXPECT_EQ(observer.loginCount(), 0u);
    countRow("callbacks without memory", 0);
}

TEST_F(ResourceFaults, RefusedMemoryAtTheFirstUseLeavesTheSdkUsable) {
    constexpr int kUsable = 10;
    constexpr long kNever = 1000000000;
    const auto use = [this](long nth) {
        SystemFaults::allocations.begin(nth);
        VESKLogin::SetLoginObserver(&observer);
        VESKLogin::Login("Steam", "", "", "");
        SystemFaults::waitForQuiet();
        writeFile(game.path() / "calls", std::to_string(SystemFaults::allocations.calls()));
        SystemFaults::allocations.end();
        for (size_t heard = observer.loginCount(); heard > 0; --heard) {
            observer.nextLogin();
        }
        return login().retCode == VESKError::SUCCESS ? kUsable : 0;
    };
    expectGame(kUsable, [&] { return use(kNever); });
    const long calls = std::stol(readFile(game.path() / "calls"));
    for (long nth = 1; nth <= calls; nth += 1 + calls / 30) {
        SCOPED_TRACE("allocation " + std::to_string(nth) + " of " + std::to_string(calls));
        expectGame(kUsable, [&] { return use(nth); });
        countRow("memory", 0);
    }
}

} // namespace

} // namespace vesk::test
