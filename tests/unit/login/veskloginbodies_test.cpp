#include "login/veskloginbodies.h"

#include "unit/unittest.h"

namespace vesk::test {

class LoginBodies : public UnitTest {
protected:
    const std::string device =
        R"("device_info":{"uuid":"","device_language":"","app_version":"","screen_dpi":0.0,)"
        R"("resolution":"","trade_mark":"WINDOWS","manufacturer":"WINDOWS","model":"","apn":"",)"
        R"("ram_info":"","rom_info":"","cpu_info":""},"channel_dis":"Windows"})";
};

TEST_F(LoginBodies, BodiesHaveTheirMembersInOrder) {
    EXPECT_EQ(VESKLoginBodies::Login(R"({"steamid":"1","ticket":"0AFF"})"),
              R"({"channel_info":{"steamid":"1","ticket":"0AFF"},)" + device);
    EXPECT_EQ(VESKLoginBodies::Login("not JSON"), R"({"channel_info":{},)" + device);
    EXPECT_EQ(VESKLoginBodies::PreCode("KZ", "a\"1"),
              R"({"channel_info":{"devinfo":"a\"1"},)" + device);
    EXPECT_EQ(VESKLoginBodies::PreCode("Ferno", "ignored"), R"({"channel_info":"",)" + device);
    EXPECT_EQ(VESKLoginBodies::PreCodeChannelID("Ferno"), 1);
    EXPECT_EQ(VESKLoginBodies::PreCodeChannelID("KZ"), 2);
    for (const char* channel : {"Steam", "kz", "KZ ", ""}) {
        EXPECT_EQ(VESKLoginBodies::PreCode(channel, "1"), "") << channel;
        EXPECT_EQ(VESKLoginBodies::PreCodeChannelID(channel), 0) << channel;
    }
    EXPECT_EQ(VESKLoginBodies::Logout("T", "O"), R"({"token":"T","openid":"O"})");
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
