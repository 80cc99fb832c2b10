#include "unit/unittest.h"

#include <atomic>
#include <ctime>
#include <thread>

#include "module/veskmodule.h"
#include "support/files.h"

namespace vesk::test {

UnitTest::UnitTest() : folder(environment("VESK_TEST_FOLDER")) {
    VESKModule::UsePath((folder / "library").make_preferred().string());
}

std::vector<std::string> UnitTest::logLines() const {
    return readSdkLog(folder / "veskrecord.log");
}

std::vector<std::string> UnitTest::newMessages() {
    const auto lines = logLines();
    std::vector<std::string> messages;
    for (; mSeen < lines.size(); ++mSeen) {
        // VESK [W.I][2020-03-19 10:02:03.045][file.cpp,Method,174]message
        const size_t stampEnd = lines[mSeen].find(']', lines[mSeen].find(']') + 1);
        messages.push_back(lines[mSeen].substr(lines[mSeen].find(']', stampEnd + 1) + 1));
    }
    return messages;
}

int64_t now() {
    return static_cast<int64_t>(std::time(nullptr));
}

void onEightThreads(const std::function<void(int)>& work) {
    std::atomic<int> missing{8};
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&, i] {
            for (--missing; missing > 0;) {
                std::this_thread::yield();
            }
            work(i);
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

} // namespace vesk::test
