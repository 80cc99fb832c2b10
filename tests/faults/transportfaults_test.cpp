// What happens to a connection on its way, and to the trust in the other end.
#include <chrono>

#include "faults/faulttest.h"

namespace vesk::test {
namespace {

namespace fs = std::filesystem;

class TransportFaults : public FaultTest {
protected:
    /// A login whose transfer fails; expects this code of the transport, or any when that is 0.
    void fails(const std::string& row, int32_t code = 0) {
        const VESKLoginRet ret = faulty(row);
        EXPECT_EQ(ret.retCode, VESKError::NETWORK_ERROR) << row;
        EXPECT_GT(ret.thirdCode, 0) << row;
        EXPECT_LT(ret.thirdCode, 100) << row;
        EXPECT_TRUE(code == 0 || ret.thirdCode == code) << row << ": " << ret.thirdCode;
    }
};

TEST_F(TransportFaults, LineBrokenAtEveryStage) {
    game.configure("VESK_URL=" + backend.lineUrl());
    settle();
    for (int i = 0; i < 19; ++i) {
        if (i == 5) { // what succeeds between does not count
            backend.breakLine("pass");
            EXPECT_EQ(faulty("passed").retCode, VESKError::SUCCESS);
        }
        backend.breakLine("refuse");
        fails("refused", 7);
        EXPECT_EQ(game.logLines("host error, result:7, errorConnectCount:9, reqSeq:"),
                  (i + 1) / 9u);
    }
    for (const char* action : {"reset", "close"}) {
        for (const char* from : {"client", "server"}) {
            size_t broken = 0;
            for (VESKLoginRet ret; ret.retCode != VESKError::SUCCESS;
                 broken += 8 * VESK_FAULT_STEP) {
                const std::string row = std::string(action) + " after byte " +
                                        std::to_string(broken) + " of the " + from;
                backend.breakLine(action, broken, from);
                ret = faulty(row);
                if (ret.retCode == VESKError::SUCCESS) {
                    break;
                }
                ASSERT_EQ(ret.retCode, VESKError::NETWORK_ERROR) << row;
                ASSERT_TRUE(ret.thirdCode > 0 && ret.thirdCode < 100) << row << ret.thirdCode;
                ASSERT_LT(broken, 10000u) << row;
            }
            // The handshake and the request, or the answer, are longer than that.
            EXPECT_GT(broken, 1000u) << action << " by the " << from;
        }
    }
    backend.breakLine("pass");
    expectWhole();
}

TEST_F(TransportFaults, NobodyIsTrustedWithoutReason) {
    settle();
    const size_t told = backend.requests("/").size();
    for (const char* kind :
         {"expired", "not-yet-valid", "wrong-name", "self-signed", "unknown-ca"}) {
        backend.showCertificate(kind);
        fails(kind, 60);
    }
    backend.showCertificate("good");
    const fs::path file = game.path() / "cacert.pem";
    const std::string good = readFile(file);
    const struct {
        const char* row;
        std::string bytes;
    } rows[] = {{"empty list", ""},
                {"no certificate in it", "hello\n"},
                {"half a certificate", good.substr(0, good.size() / 2)},
                {"zero bytes", std::string(4096, '\0')},
                {"good, but followed by a megabyte", good + std::string(1 << 20, '\n')}};
    for (const auto& row : rows) {
        writeFile(file, row.bytes);
        fails(row.row);
    }
    fs::remove(file);
    fails("missing list", 77);
    fs::create_directory(file);
    fails("a folder of that name");
    fs::remove(file);
    writeFile(file, good);
    EXPECT_EQ(backend.requests("/").size(), told) << "somebody was told";
    expectWhole();
}

TEST_F(TransportFaults, ProxyVariables) {
    forgetProxies();
    settle();
    backend.breakLine("close");
    std::string mute = backend.lineUrl();
    mute.erase(4, 1);
    const std::pair<std::string, int32_t> rows[] = {
        {"http://localhost:1", 7}, {mute, 56}, {"http://[", 5}};
    for (const auto& [proxy, code] : rows) {
        setVariable("https_proxy", proxy);
        fails(proxy, code);
        setVariable("no_proxy", "localhost");
        EXPECT_EQ(faulty(proxy + ", but not for this host").retCode, VESKError::SUCCESS);
        forgetProxies();
    }
    expectWhole();
}

// The SDK's own time-out, which no setting shortens. Other stalls are in QueueFaults.
TEST_F(TransportFaults, LoginEndsAfterFifteenSeconds) {
    game.configure("VESK_URL=" + backend.lineUrl());
    backend.breakLine("deaf");
    const auto start = std::chrono::steady_clock::now();
    fails("nobody accepts", 28);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    EXPECT_GT(seconds.count(), 14);
    EXPECT_LT(seconds.count(), 17);
}

TEST_F(TransportFaults, NameNotFound) {
    // No name server is asked for a label that is too long.
    game.configure("VESK_URL=https://" + std::string(70, 'a'));
    for (int i = 0; i < 10; ++i) {
        fails("name not found", 6);
    }
    EXPECT_EQ(game.logLines("host error, result:6, errorReshostCount:9, reqSeq:"), 1u);
}

} // namespace
} // namespace vesk::test
