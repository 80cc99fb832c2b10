// A launcher that loads the SDK for each game that it starts, and unloads it again.
#include <windows.h>
#include <atomic>
#include <gmock/gmock.h>
#include <malloc.h>
#include <objbase.h>
#include <psapi.h>
#include <thread>

#include "support/gamefolder.h"
#include "support/loadedsdk.h"
#include "support/recordingobserver.h"
#include "support/waituntil.h"

using namespace Braxel::VESK;

namespace vesk::test {
namespace {

using std::chrono::seconds;

struct Held {
    long handles = 0;
    long heapBytes = 0; ///< of the C library that the SDK and this program share
    long residentBytes = 0;
};

Held measure() {
    Held held;
    // One by one: Wine's GetProcessHandleCount always answers 0.
    for (UINT_PTR value = 4; value < 65536; value += 4) {
        DWORD flags = 0;
        if (GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != 0) {
            ++held.handles;
        }
    }
    _HEAPINFO entry = {};
    while (_heapwalk(&entry) == _HEAPOK) {
        held.heapBytes += entry._useflag == _USEDENTRY ? static_cast<long>(entry._size) : 0;
    }
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    held.residentBytes = static_cast<long>(counters.WorkingSetSize);
    return held;
}

struct UnloadCycles : ::testing::Test {
    UnloadCycles() {
        observer.onLogin = [this](const VESKLoginRet& ret) {
            EXPECT_EQ(ret.retCode, VESKError::SUCCESS);
            ++logins;
        };
    }

    void run(int cycles, const char* channel) {
        for (int i = 0; i < cycles; ++i) {
            const int before = logins;
            const LoadedSdk sdk(game.path());
            sdk.setObserver(&observer);
            sdk.login(channel);
            waitUntil("the login", [&] { return logins > before; });
            sdk.unInstall();
            sdk.leave(seconds(10));
        }
    }

    const GameFolder game;
    ActingObserver observer;
    std::atomic<int> logins{0};
};

TEST_F(UnloadCycles, AHundredLeaveHandlesAndMemoryFlat) {
    run(20, "Steam");
    const Held first = measure();
    run(80, "Steam");
    const Held last = measure();
    std::printf("\nafter 20 and 100 cycles: %ld, %ld handles; %ld, %ld bytes; %ld, %ld resident\n",
                first.handles, last.handles, first.heapBytes, last.heapBytes, first.residentBytes,
                last.residentBytes);
    EXPECT_LE(last.handles, first.handles + 2);
    // A cycle leaves the texts of the login that was held. Without the library's own heap and the
    // runtime's clean-up it would be 84 KB, of which 34 KB were ever touched.
    EXPECT_LE(last.heapBytes, first.heapBytes + 80 * 2048);
    EXPECT_LE(last.residentBytes, first.residentBytes + 80 * 8192);
}

constexpr DWORD kNoCom = ~0u;

bool comIsThere() {
    APTTYPE type = APTTYPE_CURRENT;
    APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
    return SUCCEEDED(CoGetApartmentType(&type, &qualifier));
}

TEST_F(UnloadCycles, OfEachKindOfComServerLeaveHandlesFlatAndEachKindOfThreadAsItWas) {
    const Messenger kz(game, "kz", "KZOpenSDK.dll");
    observer.onLogin =
        [this](const VESKLoginRet& ret) {
            EXPECT_EQ(ret.retCode, VESKError::SUCCESS);
            EXPECT_TRUE(comIsThere())
                << "while the component lives, also on a thread that calls nobody";
            ++logins;
        };
    const auto cycleOnAThread = [this](DWORD apartment) {
        if (apartment != kNoCom) {
            CoInitializeEx(nullptr, apartment);
        }
        run(1, "KZ");
        if (apartment != kNoCom) {
            EXPECT_EQ(CoInitializeEx(nullptr, apartment), S_FALSE) << "the SDK took it away";
            CoUninitialize();
            CoUninitialize();
        }
        const DWORD other =
            apartment == COINIT_APARTMENTTHREADED ? COINIT_MULTITHREADED : COINIT_APARTMENTTHREADED;
        EXPECT_EQ(CoInitializeEx(nullptr, other), S_OK) << "the SDK has left one";
        CoUninitialize();
    };
    const char* const servers[] = {"", "events=dispatch\napartment=1\n", "events=dispatch\n",
                                   "apartment=1\n"};
    Held first;
    for (const char* settings : servers) {
        if (settings == servers[2]) {
            first = measure();
        }
        for (const DWORD apartment :
             {kNoCom, DWORD{COINIT_MULTITHREADED}, DWORD{COINIT_APARTMENTTHREADED}}) {
            kz.script(settings);
            std::thread(cycleOnAThread, apartment).join();
            EXPECT_FALSE(comIsThere()) << settings;
        }
    }
    EXPECT_LE(measure().handles, first.handles + 2);
    EXPECT_EQ(kz.componentLines("\"unloaded\":true").size(), 12u);
    EXPECT_THAT(kz.componentLines("problem"), ::testing::IsEmpty());
}

} // namespace
} // namespace vesk::test
