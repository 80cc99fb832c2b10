// The SDK's own time-out, which no setting shortens.
#include <chrono>

#include "faults/faulttest.h"

namespace vesk::test {
namespace {

using TimeOuts = FaultTest;

TEST_F(TimeOuts, LoginEndsAfterFifteenSeconds) {
    const std::string line = backend.lineUrl();
    game.configure("VESK_URL=" + line);
    forgetProxies();
    settle();
    const char* const rows[] = {"nobody accepts", "handshake stalls",
                                "proxy refuses without an end", "answer drips"};
    for (const char* row : rows) {
        if (row == rows[0]) {
            backend.breakLine("deaf");
        } else if (row == rows[1]) {
            backend.breakLine("stall", 1, "server");
        } else if (row == rows[2]) {
            setVariable("https_proxy", "http" + line.substr(line.find(':')));
            backend.floodLine("HTTP/1.1 407 Who\r\nContent-Length: 999999999999\r\n\r\n",
                              std::string(50000, 'x'));
        } else {
            forgetProxies();
            backend.breakLine("pass");
            Answer answer = loginAnswer("A");
            answer.more = R"(,"drip_ms":1000)";
            backend.next(answer);
        }
        const auto start = std::chrono::steady_clock::now();
        const VESKLoginRet ret = faulty(row);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        EXPECT_EQ(ret.retCode, VESKError::NETWORK_ERROR) << row;
        EXPECT_EQ(ret.thirdCode, 28) << row;
        EXPECT_GT(seconds.count(), 14) << row;
        EXPECT_LT(seconds.count(), 17) << row;
    }
    expectWhole();
}

} // namespace
} // namespace vesk::test
