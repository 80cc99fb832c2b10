#include "logread/productlogtest.h"

namespace vesk::test {
namespace {

struct KZProductLog : ProductLogTest {
    KZProductLog() : ProductLogTest("KZ", "kz", "KZOpenSDK.dll") {}
};

TEST_F(KZProductLog, RedactedHoldsNoSecretAndTheLoginIsTold) {
    const VESKLoginRet ret = scanAndLogin();
    expectRedacted({"dev-key", "k-key", "kz-openid-1", "kz-ctk-1", "SIM-SERIAL",
                    "https://kz.example/qr/1", ret.openid.c_str(), ret.token.c_str()});
    const std::string story = tellLogins(log());
    EXPECT_NE(story.find(", KZ, "), std::string::npos) << story;
    EXPECT_NE(story.find("QR code shown\n"), std::string::npos) << story;
    EXPECT_NE(story.find("QR code is: Success\nplugin answer\nbackend asked\n"
                         "backend answer: ret 0\ndelivery\n"),
              std::string::npos)
        << story;
}

} // namespace
} // namespace vesk::test
