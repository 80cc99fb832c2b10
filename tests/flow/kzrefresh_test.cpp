#include "flow/refreshtest.h"

namespace vesk::test {
namespace {

struct KZRefresh : RefreshTest {
    KZRefresh() : RefreshTest("KZ", "kz", "KZOpenSDK.dll") {}
};

TEST_F(KZRefresh, FreshTokenReplacesTheOldOne) {
    script("ctk=fresh\n");
    logInAndRun();
    expectRefreshed(R"("ctk":"fresh","expired":3600,"pay_token":"")", 3600);
}

TEST_F(KZRefresh, FailureLeavesNoToken) {
    script("on_refresh=10:record:5:6:gone\n");
    logInAndRun();
    expectDropped();
}

} // namespace
} // namespace vesk::test
