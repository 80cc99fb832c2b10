#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "foundation/log/vesklogger.h"
#include "groups.h"
#include "loggedlines.h"
#include "microbench.h"
#include "support/files.h"

namespace vesk::bench {

namespace {

constexpr size_t kLineLength = 150; // with its line end
constexpr int kWriters = 8;
constexpr int kLinesEach = 250;
constexpr int kRounds = 200;

void logLine(const std::string& padding) {
    VESK_LOG_DEBUG("VESKLoginManager::OnLoginResp", "[ %s ], reqSeq:%d %s",
                   "1106-XXXX-1700000000-1", 10001, padding.c_str());
}

/// What one of many lines takes, that several threads write at the same time.
double timeTogether(const std::function<void()>& write) {
    const double start = nowNs();
    std::vector<std::thread> threads;
    threads.reserve(kWriters);
    for (int i = 0; i < kWriters; ++i) {
        threads.emplace_back([&write] {
            for (int line = 0; line < kLinesEach; ++line) {
                write();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return (nowNs() - start) / (kWriters * kLinesEach);
}

void measureLogging(Figures& figures) {
    const std::string folder = test::environment("VESK_TEST_FOLDER");
    const std::string path = folder + "/plain.log";
    logLine("");
    const std::string padding(kLineLength - test::readFile(folder + "/veskrecord.log").size(), 'x');
    const std::string line(kLineLength, 'x');
    std::mutex mutex;
    figures.ratio("one log line of 150 bytes", "raw open, append, write, close", "ns",
                  microbench(
                      "line", [&] { appendPlainly(path, line); }, [&] { logLine(padding); }),
                  atMost(1.25));
    figures.ratio("8 threads logging, a line", "the same raw calls under one mutex", "ns",
                  takeTurns(
                      kRounds,
                      [&] {
                          return timeTogether([&] {
                              const std::lock_guard<std::mutex> lock(mutex);
                              appendPlainly(path, line);
                          });
                      },
                      [&] { return timeTogether([&] { logLine(padding); }); }),
                  atMost(1.3));
}

const Group loggingGroup("logging", &measureLogging);

} // namespace
} // namespace vesk::bench
