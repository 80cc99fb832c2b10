#include "faults/faulttest.h"

#include <cstdio>
#include <cstdlib>
#include <deque>

namespace vesk::test {

void FaultTest::settle() {
    // The second one ends the first one's timer, as each further login does.
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(login().retCode, VESKError::SUCCESS) << "the login before the faults";
        ++mResults;
    }
    // The threads of the requests, and of the timer before, end a moment after the result.
    size_t still = 0;
    waitUntil("the threads of the logins to end", [&] {
        const size_t before = settled.threads;
        settled = countProcess();
        still = settled.threads == before ? still + 1 : 0;
        return still == 10;
    });
}

VESKLoginRet FaultTest::faulty(const std::string& row, const char* channel) {
    VESKLoginRet ret;
    try {
        ret = login(channel);
    } catch (const std::exception& error) {
        ADD_FAILURE() << row << ": " << error.what();
    }
    countRow(row);
    return ret;
}

void FaultTest::countRow(const std::string& what, size_t results) {
    ++mRows;
    mResults += results;
    EXPECT_EQ(observer.loginCount(), mResults) << what;
}

void FaultTest::setVariable(const std::string& name, const std::string& value) {
    static auto& texts = *new std::deque<std::string>; // the environment keeps them
    putenv(texts.emplace_back(name + "=" + value).data());
}

void FaultTest::forgetProxies() {
    for (const char* name : {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY", "http_proxy",
                             "no_proxy", "NO_PROXY"}) {
        setVariable(name, "");
    }
}

void FaultTest::expectQuiet() {
    ProcessCounts now;
    try {
        waitUntil("descriptors and threads to come back", [&] {
            now = countProcess();
            return now.threads <= settled.threads + kSystemThreads &&
                   now.descriptors <= settled.descriptors + 3 * kSystemThreads;
        });
    } catch (const std::exception&) {
        ADD_FAILURE() << "descriptors: " << now.descriptors << " of " << settled.descriptors
                      << ", threads: " << now.threads << " of " << settled.threads;
    }
}

void FaultTest::expectWhole() {
    EXPECT_EQ(login().retCode, VESKError::SUCCESS) << "the login after the faults";
    ++mResults;
    expectQuiet();
    EXPECT_EQ(observer.loginCount(), mResults) << "a result too many, or one too few";
}

void FaultTest::expectBoundedMemory() const {
    const size_t grown = countProcess().peakResidentBytes - settled.peakResidentBytes;
    EXPECT_LT(grown >> 20, VESK_FAULT_MEGABYTES);
}

void FaultTest::TearDown() {
    const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
    std::printf("faults: %s.%s: %zu rows\n", test->test_suite_name(), test->name(), mRows);
}

} // namespace vesk::test
