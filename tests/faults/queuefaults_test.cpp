// The queue of requests with more in it than four transfers carry. This program has the SDK's
// sources compiled in, so that requests can bring a time-out and a text of their own.
#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <thread>
#include <vector>

#include "faults/faulttest.h"
#include "foundation/http/veskhttpmanager.h"
#include "module/veskmodule.h"

namespace vesk::test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kThreads = 64;

/// Runs @p work(0) to @p work(63), each on a thread of its own.
void onManyThreads(const std::function<void(size_t)>& work) {
    std::vector<std::thread> threads;
    for (size_t i = 0; i < kThreads; ++i) {
        threads.emplace_back(work, i);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

/// A request with a text that no other one has, and what came of it.
struct Post {
    std::string url;
    std::string text;
    uint32_t method = HTTP_OPT_POST;
    uint32_t timeout = 0;
    Post* next = nullptr; ///< sent inside the callback
    int result = -1;
    std::string body;
    std::atomic<int> calls{0};

    void send() {
        VESKHTTPParams params(method, url, &hear, text, this);
        params.timeout = timeout;
        EXPECT_TRUE(VESKHTTPManager::GetInstance()->Request(&params));
    }

    /// @return the seconds until the answer
    double sendAndWait() {
        const auto start = Clock::now();
        send();
        waitUntil("the answer to " + text, [&] { return calls > 0; });
        return std::chrono::duration<double>(Clock::now() - start).count();
    }

    static void hear(int32_t, int32_t result, const std::string& body, void* userData) {
        Post& post = *static_cast<Post*>(userData);
        post.result = result;
        post.body = body;
        ++post.calls;
        if (post.next != nullptr) {
            post.next->send();
        }
    }
};

class QueueFaults : public FaultTest {
protected:
    QueueFaults() {
        VESKModule::UsePath((game.path() / "VESKCore.dll").make_preferred().string());
        backend.next({"echo", "", 200, 0, "echo", "", R"(,"times":100000)"});
    }

    /// Requests to a path that echoes their texts. Never freed: the SDK's threads may hold one.
    static std::deque<Post>& posts(size_t count, const std::string& path) {
        static auto& all = *new std::deque<std::deque<Post>>;
        auto& made = all.emplace_back(count);
        for (size_t i = 0; i < count; ++i) {
            made[i].url = environment("VESK_TEST_BACKEND_URL") + "/v2/" + path;
            made[i].text = path + " " + std::to_string(i);
        }
        return made;
    }

    /// Waits until each was answered, once and with its own text; an empty one stands for a
    /// failure.
    void expectAnswered(std::deque<Post>& posts, int result) {
        for (Post& post : posts) {
            waitUntil(
                "the answer to " + post.text, [&] { return post.calls > 0; },
                std::chrono::seconds(90)); // thousands on a busy machine
            ASSERT_EQ(post.result, result) << post.text;
            ASSERT_EQ(post.body, result == 0 ? post.text : "");
            if (result != 0) {
                countRow(post.text, 0);
            }
        }
    }

    static void expectOnce(const std::deque<Post>& posts) {
        for (const Post& post : posts) {
            EXPECT_EQ(post.calls, 1) << post.text;
        }
    }
};

TEST_F(QueueFaults, NoneOfThousandsIsLostDoubledOrCrossed) {
    game.configure("VESK_HTTP_TIMEOUT=600");
    settle();
    auto& many = posts(VESK_FAULT_REQUESTS, "echo");
    onManyThreads([&](size_t thread) {
        for (size_t i = thread; i < many.size(); i += kThreads) {
            many[i].send();
        }
    });
    expectAnswered(many, 0);
    countRow("more than four transfers carry", 0);
    expectWhole();
    expectOnce(many);
}

TEST_F(QueueFaults, StalledTransfersExpireTheQueueAndCallbacksAskAgain) {
    game.configure("VESK_HTTP_TIMEOUT=5");
    settle();
    backend.next({"hang", "", 200, 0, "hang", "", R"(,"times":4)"});
    auto& stalled = posts(4, "hang");
    auto& queued = posts(60, "echo");
    auto& second = posts(64, "echo");
    for (size_t i = 0; i < second.size(); ++i) {
        second[i].text += " again";
        (i < 4 ? stalled[i] : queued[i - 4]).next = &second[i];
    }
    for (Post& post : stalled) {
        post.timeout = 7;
        post.send();
    }
    onManyThreads([&](size_t thread) {
        if (thread < queued.size()) {
            queued[thread].send();
        }
    });
    EXPECT_EQ(game.logLines("]client manager request que size is overload:"), 40u);
    EXPECT_EQ(game.logLines("]client manager request que size is overload:21"), 1u);
    EXPECT_EQ(game.logLines("http client\xA3\xACwaiting in request queue"), 60u);
    expectAnswered(stalled, 28);
    expectAnswered(queued, 4);
    expectAnswered(second, 0);
    expectWhole();
    expectOnce(stalled);
    expectOnce(queued);
    expectOnce(second);
}

TEST_F(QueueFaults, ShutdownAnswersTheQueueAndTakesNoMore) {
    backend.next({"hang", "", 200, 0, "hang", "", R"(,"times":4)"});
    auto& all = posts(7, "hang");
    for (size_t i = 0; i < 6; ++i) {
        all[i].timeout = 1;
        all[i].send();
    }
    VESKHTTPManager::GetInstance()->Shutdown();
    EXPECT_EQ(all[4].calls + all[5].calls, 2) << "on the thread that ends it";
    const VESKHTTPParams late(HTTP_OPT_POST, all[6].url, &Post::hear, "late", &all[6]);
    EXPECT_FALSE(VESKHTTPManager::GetInstance()->Request(&late));
    all.pop_back();
    expectAnswered(all, 4);
    expectOnce(all);
}

TEST_F(QueueFaults, AnswerWithoutAStatusIsNoSuccess) {
    Post& post = posts(1, "file").front();
    post.method = HTTP_OPT_GET;
    post.url = "file://" + (game.path() / "VESKConfig.ini").string();
    post.sendAndWait();
    // Windows' libcurl knows nothing but HTTP.
    EXPECT_EQ(post.result, std::filesystem::path::preferred_separator == '/' ? 833 : 1);
}

TEST_F(QueueFaults, WithoutATimeToWaitRequestItselfAnswers) {
    game.configure("VESK_HTTP_TIMEOUT=");
    Post& post = posts(1, "echo").front();
    post.send();
    EXPECT_EQ(post.calls, 1);
    EXPECT_EQ(post.result, 4);
    EXPECT_EQ(post.body, "");
}

TEST_F(QueueFaults, TransferEndsInTimeWhereverItStalls) {
    settle();
    auto& stalled = posts(20, "echo");
    size_t used = 0;
    const auto stalls = [&](const std::string& row, const std::string& url) {
        Post& post = stalled[used++];
        post.url = url;
        post.text.append(3000, 'x'); // more than the bytes before the last stall
        post.timeout = 1;
        const double seconds = post.sendAndWait();
        EXPECT_EQ(post.result, 28) << row;
        EXPECT_GT(seconds, 0.9) << row;
        EXPECT_LT(seconds, 5) << row;
        countRow(row, 0);
    };
    const std::string line = backend.lineUrl() + "/v2/echo";
    backend.breakLine("deaf");
    stalls("nobody accepts", line);
    for (const char* from : {"client", "server"}) {
        for (const size_t after : {0, 1, 300, 1000, 2000}) {
            backend.breakLine("stall", after, from);
            stalls("after byte " + std::to_string(after) + " of the " + from, line);
        }
    }
    const std::string loop = environment("VESK_TEST_BACKEND_URL") + "/v2/fault";
    const Answer answers[] = {
        {"fault", "", 200, 0, "hang"},
        {"fault", "slow", 200, 3000},
        {"fault", std::string(100, 'x'), 200, 0, "answer", "", R"(,"drip_ms":50)"},
        {"fault", "", 307, 0, "redirect", loop, R"(,"times":1000000)"},
    };
    for (const Answer& answer : answers) {
        backend.next(answer);
        stalls(answer.action + answer.body + answer.more, loop);
    }
    expectWhole();
}

TEST_F(QueueFaults, FloodsEndInBoundedTimeAndMemory) {
    settle();
    forgetProxies();
    std::string lines;
    while (lines.size() < 50000) {
        lines += "a:b\r\n";
    }
    const std::string chunks = "Transfer-Encoding: chunked\r\n\r\n";
    const std::string refusal = "HTTP/1.1 407 Who\r\n";
    const struct {
        const char* row;
        int result; ///< 0: of whichever bound comes first, libcurl's own among them
        bool ofProxy;
        std::string head, wave;
    } rows[] = {
        {"refusal's body", 28, true, refusal + "Content-Length: 999999999999\r\n\r\n", lines},
        {"refusal's chunks", 28, true, refusal + chunks, "4\r\nabcd\r\n"},
        {"refusal's trailers", 0, true, refusal + chunks + "0\r\n", lines},
        {"refusal's headers", 0, true, refusal, lines},
        {"trailers", 23, false, "HTTP/1.1 200 Fine\r\n" + chunks + "0\r\n", lines},
        {"headers", 0, false, "HTTP/1.1 200 Fine\r\n", lines},
        {"provisional answers", 0, false, "", "HTTP/1.1 103 Soon\r\na:b\r\n\r\n"},
        {"redirects", 0, false, "",
         "HTTP/1.1 307 There\r\nLocation: /\r\nContent-Length: 0\r\n" + lines + "\r\n"},
    };
    std::string line = backend.lineUrl();
    line.replace(0, line.find(':'), "http");
    auto& flooded = posts(2 * std::size(rows), "flood");
    for (size_t i = 0; i < flooded.size(); ++i) {
        const auto& row = rows[i / 2];
        Post& post = flooded[i];
        post.method = i % 2 == 0 ? HTTP_OPT_POST : HTTP_OPT_GET;
        post.url = row.ofProxy ? "https://localhost" : line;
        post.timeout = 1;
        setVariable("https_proxy", row.ofProxy ? line : "");
        backend.floodLine(row.head, row.wave);
        EXPECT_LT(post.sendAndWait(), 5) << row.row;
        EXPECT_TRUE(row.result == 0 ? post.result > 0 && post.result < 100
                                    : post.result == row.result)
            << row.row << ": " << post.result;
        countRow(row.row, 0);
    }
    forgetProxies();
    expectWhole();
    expectBoundedMemory();
}

TEST_F(QueueFaults, ManyGameThreadsLogIn) {
    settle();
    constexpr size_t kEach = VESK_FAULT_REQUESTS < 1000 ? 2 : 4;
    onManyThreads([](size_t) {
        for (size_t i = 0; i < kEach; ++i) {
            VESKLogin::Login("Steam", "", "", "");
            VESKLoginRet ret;
            VESKLogin::GetLoginRet(ret);
        }
    });
    // Superseded ones run to their ends, unheard; the newest is heard.
    waitUntil(
        "every request's end",
        [&] {
            return observer.loginCount() > 2 &&
                   game.logLines("request que size:") == game.logLines("] method id :");
        },
        std::chrono::seconds(60));
    expectQuiet();
    const size_t heard = observer.loginCount() - 2;
    EXPECT_LE(heard, kThreads * kEach);
    for (size_t i = 0; i < heard; ++i) {
        EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    }
    countRow("logins at the same time", heard);
    expectWhole();
}

} // namespace
} // namespace vesk::test
