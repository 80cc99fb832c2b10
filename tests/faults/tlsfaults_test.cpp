// What a request over TLS leaves to the next one, and when it must not. Not on Windows: Wine's
// Schannel resumes no session, and libcurl keeps nothing else there.
#include <atomic>
#include <future>
#include <openssl/x509_vfy.h>
#include <sys/stat.h>
#include <thread>
#include <vector>

#include "faults/faulttest.h"
#include "foundation/http/veskhttpmanager.h"
#include "module/veskmodule.h"

namespace vesk::test {
namespace {

namespace fs = std::filesystem;

class TlsFaults : public FaultTest {
protected:
    TlsFaults() {
        VESKModule::UsePath((game.path() / "libVESKCore.so").string());
        for (const char* name : {"ours", "also ours"}) {
            writeFile(folder / name, readFile(list) + name);
        }
        writeFile(folder / "others", readFile(folder / "somebody_else.pem"));
        writeFile(folder / "half", readFile(list).substr(0, 300));
        mkfifo((folder / "pipe").c_str(), 0600);
        use("ours");
        forgetProxies();
        settle();
        // What has changed just now is read anew each time.
        for (int i = 0; i < 3; ++i) {
            request("a file of now", 0, 0);
        }
        std::this_thread::sleep_for(std::chrono::seconds(3));
    }

    /// Puts that file in the place of the list, and does not change it: nothing but what is under
    /// its name differs.
    void use(const std::string& name) const {
        fs::remove(list);
        fs::create_symlink(folder / name, list);
    }

    static std::future<int32_t> begin(const std::string& url) {
        auto* const result = new std::promise<int32_t>;
        VESKHTTPParams params(HTTP_OPT_POST, url + "/v2/auth/login", &hear, "{}", result);
        params.timeout = 5;
        auto heard = result->get_future();
        EXPECT_TRUE(VESKHTTPManager::GetInstance()->Request(&params));
        return heard;
    }

    /// One request; expects its result, and how many sessions the backend resumed for it.
    void request(const std::string& row, int32_t result, size_t resumed,
                 const std::string& url = environment("VESK_TEST_BACKEND_URL")) {
        const size_t before = backend.resumedSessions();
        EXPECT_EQ(begin(url).get(), result) << row;
        EXPECT_EQ(backend.resumedSessions() - before, resumed) << row;
        countRow(row, 0);
    }

    /// The first reads the list, the second has it parsed, the third has a session besides.
    void remember(const std::string& url = environment("VESK_TEST_BACKEND_URL")) {
        for (const size_t resumed : {0, 0, 1}) {
            request("remembering", 0, resumed, url);
        }
    }

    const fs::path folder = game.path();
    const fs::path list = folder / "cacert.pem";

private:
    static void hear(int32_t, int32_t result, const std::string&, void* promise) {
        const std::unique_ptr<std::promise<int32_t>> owned(
            static_cast<std::promise<int32_t>*>(promise));
        owned->set_value(result);
    }
};

TEST_F(TlsFaults, SessionsGoBackToTheirServerAlone) {
    const struct {
        const char* conduct; ///< of the server, from now on
        int32_t result;
        size_t resumed;
    } rows[] = {
        {R"({"sessions":"forget"})", 0, 0},
        {"", 0, 1},
        {R"({"sessions":"refuse"})", 0, 0},
        {"", 0, 0},
        {R"({"version":"1.2","sessions":"keep"})", 0, 0},
        {"", 0, 1},
        {R"({"version":"1.3"})", 0, 0},
        {"", 0, 1},
        {R"({"sessions":"choke"})", 35, 0},
        {"", 0, 0}, // what it chokes on is not offered again
        {R"({"sessions":"keep","version":"any"})", 0, 0},
    };
    remember();
    for (const auto& row : rows) {
        backend.conduct(row.conduct);
        request(row.conduct, row.result, row.resumed);
    }
    std::string otherHost = environment("VESK_TEST_BACKEND_URL");
    otherHost.replace(otherHost.find("localhost"), 9, "127.0.0.1");
    for (const std::string& other : {otherHost, backend.lineUrl()}) {
        remember(other);
        remember();
    }
    setVariable("https_proxy", "http://localhost:1");
    setVariable("no_proxy", "localhost");
    request("a proxy, though not for this host", 0, 0);
    forgetProxies();
    const std::string url = environment("VESK_TEST_BACKEND_URL");
    backend.next({"auth/login", "", 307, 0, "redirect", url + "/v2/auth/login"});
    request("reading the list for two connections", 0, 1);
    request("having it parsed from the first", 0, 0);
    expectWhole();
}

TEST_F(TlsFaults, NobodyIsTrustedFromMemory) {
    for (const char* kind :
         {"expired", "not-yet-valid", "wrong-name", "self-signed", "unknown-ca"}) {
        remember();
        backend.showCertificate(kind);
        request(kind, 60, 0);
        backend.showCertificate("good");
    }
    for (const auto& [name, result] : {std::pair("others", 60), std::pair("half", 77),
                                       std::pair("pipe", 77), std::pair("nothing", 77)}) {
        use("ours");
        remember();
        use(name);
        request(name, result, 0);
        request(name, result, 0);
    }
    use("ours");
    remember();
    use("also ours");
    remember();
    // Another file while the first one's request has not read it yet.
    const std::string line = backend.lineUrl();
    use("others");
    backend.breakLine("deaf");
    auto slow = begin(line);
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    use("ours");
    backend.breakLine("pass");
    EXPECT_EQ(slow.get(), 0);
    use("others");
    request("not what the other file vouched for", 60, 0, line);
    // Other bytes in the same file, as many, with the time of before.
    use("ours");
    remember();
    const auto time = fs::last_write_time(folder / "ours");
    writeFile(folder / "ours", std::string(fs::file_size(folder / "ours"), '\n'));
    fs::last_write_time(folder / "ours", time);
    std::this_thread::sleep_for(std::chrono::seconds(3));
    request("emptied in secret", 77, 0);
    use("also ours");
    expectWhole();
}

TEST_F(TlsFaults, ManyThreadsShareWhatComesAndGoes) {
    static std::atomic<int> parsed{0}; // files of authorities that are in memory
    X509_STORE_get_ex_new_index(
        0, nullptr, [](auto...) { ++parsed; }, nullptr, [](auto...) { --parsed; });
    remember();
    const std::string url = environment("VESK_TEST_BACKEND_URL");
    std::vector<std::thread> threads;
    threads.reserve(64);
    for (int i = 0; i < 64; ++i) {
        threads.emplace_back([&] {
            for (int j = 0; j < 4; ++j) {
                EXPECT_EQ(begin(url).get(), 0);
            }
        });
    }
    for (const char* name : {"also ours", "ours", "also ours"}) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        fs::create_symlink(folder / name, folder / "next");
        fs::rename(folder / "next", list);
        backend.conduct(R"({"sessions":"forget"})");
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_GT(backend.resumedSessions(), 100u);
    countRow("64 threads", 0);
    expectWhole();
    EXPECT_EQ(parsed, 1);
    const auto last = begin(url);
    VESKHTTPManager::GetInstance()->Shutdown();
    last.wait();
    EXPECT_EQ(parsed, 0) << "what is kept of TLS does not end with the SDK";
}

} // namespace
} // namespace vesk::test
