#include "foundation/http/veskhttpmanager.h"

#include <mutex>
#include <thread>

#include "support/waituntil.h"
#include "unit/foundation/http/loopbackserver.h"
#include "unit/unittest.h"

namespace vesk::test {

class HttpManager : public UnitTest {
protected:
    struct Heard {
        int32_t reqSeq;
        int32_t result;
        std::string body;
        void* userData;
        std::thread::id thread;
    };

    static void hear(int32_t reqSeq, int32_t result, const std::string& body, void* userData) {
        const std::lock_guard<std::mutex> lock(mutex);
        heard.push_back({reqSeq, result, body, userData, std::this_thread::get_id()});
    }

    /// Waits for so many outcomes since the start and returns all of them.
    static std::vector<Heard> waitFor(size_t count) {
        std::vector<Heard> copy;
        waitUntil("the outcomes", [&] {
            const std::lock_guard<std::mutex> lock(mutex);
            copy = heard;
            return copy.size() >= count;
        });
        return copy;
    }

    /// Sends so many GETs and returns their ids.
    std::vector<int32_t> get(const std::string& url, int count) {
        std::vector<int32_t> ids;
        for (int i = 0; i < count; ++i) {
            const VESKHTTPParams params(HTTP_OPT_GET, url, &hear, "", &context);
            EXPECT_TRUE(manager.Request(&params));
            ids.push_back(params.reqSeq);
        }
        return ids;
    }

    inline static int context = 0;
    VESKHTTPManager& manager = *VESKHTTPManager::GetInstance();

private:
    // Never destroyed: the product's threads may outlive the case.
    inline static std::mutex& mutex = *new std::mutex;
    inline static std::vector<Heard>& heard = *new std::vector<Heard>;
};

TEST_F(HttpManager, RefusesWhatItCannotSend) {
    const std::string noUrl = "[VESK HTTP] http params error! params is NULL or url is empty";
    const std::string noMethod = "[VESK HTTP] http not HTTP_OPT_POST or HTTP_OPT_GET!";
    const Rows<uint32_t, const char*, const char*, std::string> rows = {
        {HTTP_OPT_GET, "", "", noUrl},
        {HTTP_OPT_POST, "http://x", "", "[VESK HTTP] http post data is empty!"},
        {HTTP_OPT_NO, "http://x", "b", noMethod},
        {HTTP_OPT_HEAD, "http://x", "b", noMethod},
        {4, "http://x", "b", noMethod},
    };
    for (const auto& [method, url, body, message] : rows) {
        const VESKHTTPParams params(method, url, &hear, body, nullptr);
        newMessages();
        EXPECT_FALSE(manager.Request(&params));
        EXPECT_THAT(newMessages(), ElementsAre(message));
    }
    EXPECT_FALSE(manager.Request(nullptr));
    manager.init();
    EXPECT_THAT(newMessages(), ElementsAre(noUrl, "[VESK HTTP] VESKHTTPManager is inited"));
    VESKHTTPClient client;
    EXPECT_FALSE(client.Request(HttpParams(), nullptr, nullptr));
    EXPECT_EQ(newMessages().back(), "[VESK HTTP] http_opt_ != HTTP_OPT_NO");
    EXPECT_THAT(waitFor(0), IsEmpty());
}

TEST_F(HttpManager, GetFollowsTwoRedirectsAndSendsNoHeadersOfTheRequester) {
    using namespace std::string_literals;
    const LoopbackServer server;
    const std::string redirect = "HTTP/1.1 302 Found\r\nLocation: /next\r\nContent-Length: 0\r\n"
                                 "Connection: close\r\n\r\n";
    const std::string body = "HTTP/1.1 206 Fine\r\nContent-Length: 3\r\n\r\na\0b"s;
    VESKHTTPParams params(HTTP_OPT_GET, server.url(), &hear, "", &context);
    params.headers["X-Own"] = "1";
    for (const auto& [last, result, expected] :
         Rows<std::string, int32_t, std::string>{{body, 0, "a\0b"s}, {redirect, 47, ""}}) {
        EXPECT_TRUE(manager.Request(&params));
        const std::string request = server.answer(redirect);
        EXPECT_THAT(request, StartsWith("GET /path?query HTTP/1.1\r\n"));
        EXPECT_THAT(request, Not(HasSubstr("X-Own")));
        EXPECT_THAT(server.answer(redirect), StartsWith("GET /next HTTP/1.1\r\n"));
        server.answer(last);
        const Heard heard = waitFor(result == 0 ? 1 : 2).back();
        EXPECT_EQ(heard.reqSeq, params.reqSeq);
        EXPECT_EQ(heard.result, result);
        EXPECT_EQ(heard.body, expected);
        EXPECT_NE(heard.thread, std::this_thread::get_id());
    }
    EXPECT_EQ(logged("VESKHTTPClient::SendReadRequest,"), 7u);
}

TEST_F(HttpManager, AnswerWithoutAStatusIsNoSuccess) {
    write("file", "text");
    get("file://" + (folder / "file").string(), 1);
    // Windows' libcurl knows nothing but HTTP.
    const bool knowsFiles = std::filesystem::path::preferred_separator == '/';
    EXPECT_EQ(waitFor(1).at(0).result, knowsFiles ? 833 : 1);
}

TEST_F(HttpManager, FourRunAndTheRestWaits) {
    LoopbackServer server;
    const auto ids = get(server.url(), 25);
    EXPECT_EQ(logged("]client manager request que size is overload:"), 1u);
    EXPECT_EQ(logged("]client manager request que size is overload:21"), 1u);
    EXPECT_EQ(logged("][VESK HTTP] http request url:"), 4u);
    EXPECT_EQ(logged("http client\xA3\xACwaiting in request queue"), 21u);
    server.close();
    std::vector<int32_t> answered;
    for (const Heard& one : waitFor(25)) {
        EXPECT_NE(one.result, 0);
        answered.push_back(one.reqSeq);
    }
    EXPECT_THAT(answered, UnorderedElementsAreArray(ids));
}

TEST_F(HttpManager, WithoutATimeToWaitRequestItselfAnswers) {
    write("VESKConfig.ini", "VESK_HTTP_TIMEOUT=\nVESK_CONFIG_LOG_ENABLE=1");
    get("http://127.0.0.1", 1);
    const Heard heard = waitFor(1).at(0);
    EXPECT_EQ(heard.result, 4);
    EXPECT_EQ(heard.body, "");
    EXPECT_EQ(heard.userData, &context);
    EXPECT_EQ(heard.thread, std::this_thread::get_id());
    EXPECT_EQ(logged("][VESK HTTP] have no available http request"), 1u);
    std::string order;
    for (const std::string& line : logLines()) {
        order += line.find("] Get clientIdle") != std::string::npos ? "client " : "";
        order += line.find("key = VESK_HTTP_TIMEOUT") != std::string::npos ? "time " : "";
    }
    EXPECT_EQ(order, "client time ");
}

TEST_F(HttpManager, EveryNinthConnectErrorIsToldWhateverSucceedsBetween) {
    const LoopbackServer open;
    LoopbackServer closed;
    closed.close();
    for (size_t i = 1; i <= 19; ++i) {
        get(i == 5 ? open.url() : closed.url(), 1);
        if (i == 5) {
            open.answer("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
        }
        EXPECT_EQ(waitFor(i).back().result, i == 5 ? 0 : 7);
        EXPECT_EQ(logged("host error, result:7, errorConnectCount:9, reqSeq:"), (i - 1) / 9) << i;
    }
    EXPECT_EQ(logged("][VESK HTTP] VESKHTTPManager return host error"), 2u);
}

TEST_F(HttpManager, ShutdownAnswersTheQueueAndTakesNoMore) {
    LoopbackServer server;
    get(server.url(), 6);
    manager.Shutdown();
    for (const Heard& one : waitFor(2)) {
        EXPECT_EQ(one.result, 4);
        EXPECT_EQ(one.thread, std::this_thread::get_id());
    }
    const VESKHTTPParams late(HTTP_OPT_GET, server.url(), &hear, "", nullptr);
    EXPECT_FALSE(manager.Request(&late));
    server.close();
    EXPECT_EQ(waitFor(6).size(), 6u);
}

} // namespace vesk::test
