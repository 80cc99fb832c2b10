#include "platformimpl/login/vesksteam/vesksteamwrapper.h"

#include "platformimpl/login/veskloginimpl.h"
#include "unit/unittest.h"

namespace vesk::test {
class SteamWrapper : public UnitTest {
protected:
    VESKSteamWrapper& steam = *VESKSteamWrapper::GetInstance();
};

TEST_F(SteamWrapper, AppIdIsTheNumberThatTheTextBeginsWith) {
    EXPECT_FALSE(steam.InitSteamApi("480abc")); // the client wants a restart for 480
    EXPECT_EQ(logged("]Init Steam SDK, appid:480abc uint32 appid:480"), 1u);
    EXPECT_EQ(logged("]Stop Init Steam SDK, need to restart from Steam Client!"), 1u);
    EXPECT_TRUE(steam.InitSteamApi("abc480"));
    EXPECT_EQ(logged("No STEAM_APP_ID in VESKConfig.ini, don't call "
                     "SteamAPI_RestartAppIfNecessary"),
              1u);
}

TEST_F(SteamWrapper, IdIsSignedAndTheTicketEndsWithItsBuffer) {
    EXPECT_TRUE(steam.InitSteamApi(""));
    EXPECT_EQ(steam.GetSteamID(), "-9223372036854775807");
    std::string ticket;
    for (int i = 0; i < 1024; ++i) {
        ticket += "A5";
    }
    EXPECT_EQ(steam.GetAuthSessionTicket(), ticket);
    EXPECT_EQ(logged("]Get auth session ticket from Steam SDK, authTicket:7 size:1024 ticket "
                     "length:2048"),
              1u);
    // This client has no entry point to cancel the ticket: both texts are forgotten all the same.
    steam.Logout();
    EXPECT_EQ(logged("]Get SteamAPI_ISteamUser_CancelAuthTicket func failed"), 1u);
    newMessages();
    steam.GetSteamID();
    EXPECT_THAT(newMessages(), Contains("Call SteamAPI_ISteamUser_GetSteamID"));
}

TEST_F(SteamWrapper, ChannelsAreClosedOnceTheyAreUninstalled) {
    VESKLoginIMPL::GetInstance()->UnInstallPlugins();
    LogoutRequest request;
    request.channel = "Steam";
    EXPECT_FALSE(VESKLoginIMPL::GetInstance()->Logout(request)) << "nobody is there to answer";
}

} // namespace vesk::test
