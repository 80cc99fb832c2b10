#include "login/veskloginbodies.h"

#include "unit/unittest.h"

namespace vesk::test {

using LoginBodies = UnitTest;

TEST_F(LoginBodies, OfMessengersOnlyArePreCodesAndNoJsonIsAnEmptyObject) {
    for (const char* channel : {"Steam", "kz", "KZ ", ""}) {
        EXPECT_EQ(VESKLoginBodies::PreCode(channel, "1"), "") << channel;
        EXPECT_EQ(VESKLoginBodies::PreCodeChannelID(channel), 0) << channel;
    }
    EXPECT_THAT(VESKLoginBodies::Login("not JSON"), StartsWith(R"({"channel_info":{},"device)"));
}

TEST_F(LoginBodies, AutoLoginIsForBackendsOfOnesOwn) {
    const std::string production = VESKLoginBodies::kProductionBaseUrl;
    const std::string test = VESKLoginBodies::kTestBaseUrl;
    EXPECT_THAT(production, StartsWith("https://"));
    EXPECT_THAT(test, StartsWith("http://"));
    const Rows<std::string, bool> rows = {{"", false},
                                          {production, false},
                                          {test, false},
                                          {test + "/", true},
                                          {"https://localhost:8443", true}};
    for (const auto& [url, allowed] : rows) {
        EXPECT_EQ(VESKLoginBodies::AllowsAutoLogin(url), allowed) << url;
    }
}

} // namespace vesk::test
