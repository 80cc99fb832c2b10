#include "faults/faulttest.h"

namespace vesk::test {
namespace {

struct ComponentFaults : FaultTest {
    /// A login through Ferno whose callbacks come as @p script says.
    VESKLoginRet scan(const std::string& script) {
        ferno.script(script);
        return faulty(script.substr(0, 80), "Ferno");
    }

    const Messenger ferno{game, "ferno", "frlogin.dll"};
};

TEST_F(ComponentFaults, AnyCallbacksGiveALoginOneAnswer) {
    const std::string megabyte(1 << 20, 'x');
    const std::string rows[] = {
        "threads=8\non_qrcode=5:qr:u,5:success",
        "threads=8\non_qrcode=5:qr:u,5:fail:1:1",
        "threads=8\non_qrcode=5:qr:u,0:success,0:fail:1:1,0:kickout:1,0:exception,0:success",
        "threads=4\nnull_texts=1\non_qrcode=5:qr:u,5:success",
        "on_qrcode=5:success,5:qr:u,5:qr:u,5:success,5:scanned,5:token,5:token_fail:1:1",
        "on_qrcode=5:qr:" + megabyte + ",5:success",
        "openid=" + megabyte + "\nctt=" + megabyte + "\non_qrcode=5:success",
    };
    scan(rows[0]); // what the component and its callbacks make once
    settle();
    for (const std::string& row : rows) {
        SCOPED_TRACE(row.substr(0, 80));
        const VESKLoginRet ret = scan(row);
        VESKLoginRet stored;
        const bool found = VESKLogin::GetLoginRet(stored);
        if (row.find(":token") == std::string::npos) { // which comes when it likes
            EXPECT_EQ(found, ret.retCode == VESKError::SUCCESS);
            EXPECT_EQ(stored.token, ret.token) << "of two good answers the other one is held";
        }
        EXPECT_EQ(faulty("the next one").retCode, VESKError::SUCCESS);
    }
    EXPECT_EQ(scan("").retCode, VESKError::SUCCESS);
    expectWhole();
}

} // namespace
} // namespace vesk::test
