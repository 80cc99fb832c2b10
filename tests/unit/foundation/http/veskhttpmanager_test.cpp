#include "foundation/http/veskhttpmanager.h"

#include <future>
#include <thread>

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
        outcome.set_value({reqSeq, result, body, userData, std::this_thread::get_id()});
    }

    /// Sends the case's one GET and waits for its outcome.
    Heard get(const std::string& url) {
        const VESKHTTPParams params(HTTP_OPT_GET, url, &hear, "", &context);
        EXPECT_TRUE(manager.Request(&params));
        Heard heard = outcome.get_future().get();
        EXPECT_EQ(heard.reqSeq, params.reqSeq);
        return heard;
    }

    inline static int context = 0;
    VESKHTTPManager& manager = *VESKHTTPManager::GetInstance();

private:
    // Never destroyed: the product's threads may outlive the case.
    inline static std::promise<Heard>& outcome = *new std::promise<Heard>;
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
}

TEST_F(HttpManager, AnswerWithoutAStatusIsNoSuccess) {
    write("file", "text");
    const Heard heard = get("file://" + (folder / "file").string());
    // Windows' libcurl knows nothing but HTTP.
    const bool knowsFiles = std::filesystem::path::preferred_separator == '/';
    EXPECT_EQ(heard.result, knowsFiles ? 833 : 1);
    EXPECT_NE(heard.thread, std::this_thread::get_id());
}

TEST_F(HttpManager, WithoutATimeToWaitRequestItselfAnswers) {
    write("VESKConfig.ini", "VESK_HTTP_TIMEOUT=\nVESK_CONFIG_LOG_ENABLE=1");
    const Heard heard = get("http://127.0.0.1");
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

} // namespace vesk::test
