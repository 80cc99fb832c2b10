#include "devkit/scanpagetest.h"

namespace vesk::test {
namespace {

struct KZScanPage : ScanPageTest {
    KZScanPage() : ScanPageTest("KZ", "kz", "KZOpenSDK.dll") {}
};

TEST_F(KZScanPage, ConfirmedCodeLogsIn) {
    const std::string id = showCode();
    EXPECT_EQ(player.newest("channel"), "KZ");
    EXPECT_NE(player.newest("seq"), "");
    EXPECT_EQ(player.press(id, "kickout"), 409) << "KZ knows no kick-out";
    EXPECT_EQ(player.press(id, "scanned"), 200);
    EXPECT_EQ(player.press(id, "confirm"), 200);
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    EXPECT_EQ(backend.waitForRequest("auth/login").verdict, "ok");
    EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
    player.waitForState(id, "ended");
    EXPECT_TRUE(componentLines("problem").empty());
}

TEST_F(KZScanPage, EachRefusalFailsTheLogin) {
    expectEachToFailALogin({{"deny", "", "denied", "OpenSDK_QrScanResult_Cancel"},
                            {"expire", "", "expired", "OpenSDK_QrScanResult_Expired"},
                            {"fail", ",\"code\":5", "failed", "OpenSDK_QrScanResult_Failed"}});
    EXPECT_TRUE(componentLines("problem").empty());
}

TEST_F(KZScanPage, UnInstallDoesNotWaitForThePlayer) {
    expectUnInstallNotToWaitForThePlayer();
}

TEST_F(KZScanPage, MissingBackendFailsTheLogin) {
    script("interactive=http://127.0.0.1:1");
    EXPECT_EQ(scanAndLogin().retCode, 9999);
    EXPECT_EQ(componentLines("the dev backend does not answer").size(), 1u);
}

} // namespace
} // namespace vesk::test
