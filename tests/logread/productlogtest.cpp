#include "logread/productlogtest.h"

#include <regex>

namespace vesk::test {

ProductLogTest::ProductLogTest(const char* channel, const char* simulator, const char* fileName)
    : MessengerTest(channel, simulator, fileName) {
    game.configure("VESK_CONFIG_LOG_ENABLE=1\nVESK_JSON_LOG_ENABLE=1");
}

void ProductLogTest::expectRedacted(std::vector<std::string> secrets) const {
    const std::string clear = printLog(log(), logread::TextFormat());
    const std::string redacted = printLog(log(), logread::TextFormat(), {}, true);
    const std::regex made("(?:sig=|precode\":\"|password\":\")([\\w-]{8,})");
    for (std::sregex_iterator found(clear.begin(), clear.end(), made), end; found != end; ++found) {
        secrets.push_back((*found)[1]);
    }
    for (const std::string& secret : secrets) {
        EXPECT_NE(clear.find(secret), std::string::npos) << secret;
        const size_t at = redacted.find(secret);
        EXPECT_EQ(at, std::string::npos) << redacted.substr(at - std::min<size_t>(at, 200), 300);
    }
    EXPECT_EQ(std::count(clear.begin(), clear.end(), '\n') > 300, true) << "a log of some length";
}

} // namespace vesk::test
