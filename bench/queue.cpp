#include <atomic>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "foundation/http/veskhttpmanager.h"
#include "game.h"
#include "groups.h"

using namespace Braxel::VESK;

namespace vesk::bench {

namespace {

constexpr size_t kRequests = 1000;
constexpr size_t kThreads = 4;
constexpr int kQueueTurns = 9;

/// Counts answers down.
struct Answers {
    std::mutex mutex;
    std::condition_variable changed;
    size_t missing = kRequests;
    size_t failed = 0;

    static void onAnswer(int32_t /*reqSeq*/, int32_t result, const std::string& body,
                         void* context) {
        auto* answers = static_cast<Answers*>(context);
        const bool good = result == 0 && body.find("\"ret\":0") != std::string::npos;
        const std::lock_guard<std::mutex> lock(answers->mutex);
        answers->failed += good ? 0 : 1;
        if (--answers->missing == 0) {
            answers->changed.notify_all();
        }
    }
};

double queueAll(const PlainRequest& request) {
    Answers answers;
    const double start = nowNs();
    for (size_t i = 0; i < kRequests; ++i) {
        VESKHTTPParams params(HTTP_OPT_POST, request.url, &Answers::onAnswer, request.body,
                              &answers);
        params.seqID = "bench";
        VESKHTTPManager::GetInstance()->Request(&params);
    }
    std::unique_lock<std::mutex> lock(answers.mutex);
    answers.changed.wait(lock, [&] { return answers.missing == 0; });
    const double took = nowNs() - start;
    if (answers.failed != 0) {
        throw std::runtime_error(std::to_string(answers.failed) + " requests failed");
    }
    lock.unlock();
    waitForThreads(1);
    return took;
}

double workOffPlainly(const PlainRequest& request) {
    std::atomic<size_t> next{0};
    const double start = nowNs();
    std::vector<std::thread> threads;
    for (size_t i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            while (next++ < kRequests) {
                request.post();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return nowNs() - start;
}

void measureQueue(Figures& figures) {
    const Game game;
    const PlainRequest request = game.requestsOf("Steam").front();
    const Pair times = takeTurns(
        kQueueTurns,
        [&] {
            Game::clearBackend();
            return workOffPlainly(request);
        },
        [&] { return queueAll(request); });
    const auto perSecond = [](double ns) { return static_cast<double>(kRequests) * 1e9 / ns; };
    const bool secure = isSecure(request.url);
    figures.ratio(secure ? "1,000 HTTPS requests queued at once"
                         : "1,000 plain HTTP requests queued at once",
                  "4 threads of plain libcurl working off a list", "requests/s",
                  {perSecond(times.baseline), perSecond(times.measured)},
                  secure ? atLeast(1.40) : reported());
}

const Group queueGroup("queue", &measureQueue);

} // namespace
} // namespace vesk::bench
