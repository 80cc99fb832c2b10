#include "devkit/scanpagetest.h"

namespace vesk::test {
namespace {

struct KZScanPage : ScanPageTest {
    KZScanPage() : ScanPageTest("KZ", "kz", "KZOpenSDK.dll") {}
};

TEST_F(KZScanPage, ConfirmedCodeLogsIn) {
    const Session session = showCode();
    EXPECT_EQ(session.channel, "KZ");
    EXPECT_NE(session.seq, "");
    EXPECT_EQ(player.press(session.id, "scanned"), 200);
    EXPECT_EQ(player.press(session.id, "confirm"), 200);
    EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
    EXPECT_EQ(backend.waitForRequest("auth/login").verdict, "ok");
    EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
    player.waitForState(session.id, "ended");
    EXPECT_TRUE(componentLines("problem").empty());
}

TEST_F(KZScanPage, EachRefusalFailsTheLogin) {
    const char* const rows[][3] = {{"deny", "", "OpenSDK_QrScanResult_Cancel"},
                                   {"expire", "", "OpenSDK_QrScanResult_Expired"},
                                   {"fail", ",\"code\":5", "OpenSDK_QrScanResult_Failed"}};
    size_t count = 0;
    for (const auto& row : rows) {
        const Session session = showCode(++count);
        EXPECT_EQ(player.press(session.id, "kickout"), 409) << "KZ knows no kick-out";
        EXPECT_EQ(player.press(session.id, row[0], row[1]), 200) << row[0];
        EXPECT_EQ(observer.nextLogin().ret.retCode, 9999) << row[0];
        EXPECT_EQ(game.logLines(row[2]), 1u) << row[2];
    }
    EXPECT_TRUE(componentLines("problem").empty());
}

TEST_F(KZScanPage, UnInstallDoesNotWaitForThePlayer) {
    const Session session = showCode();
    const auto begin = std::chrono::steady_clock::now();
    VESKLogin::UnInstall();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(1500));
    player.waitForState(session.id, "ended");
}

TEST_F(KZScanPage, MissingBackendFailsTheLogin) {
    script("interactive=http://127.0.0.1:1");
    EXPECT_EQ(scanAndLogin().retCode, 9999);
    EXPECT_EQ(componentLines("the dev backend does not answer").size(), 1u);
}

} // namespace
} // namespace vesk::test
