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
    EXPECT_TRUE(steam.InitSteamApi("abc480"));
    EXPECT_EQ(logged("No STEAM_APP_ID in VESKConfig.ini, don't call "
                     "SteamAPI_RestartAppIfNecessary"),
              1u);
}

TEST_F(SteamWrapper, IdIsSignedAndTheTicketEndsWithItsBuffer) {
    EXPECT_TRUE(steam.InitSteamApi(""));
    EXPECT_EQ(steam.GetSteamID(), "-9223372036854775807");
    const std::string ticket = steam.GetAuthSessionTicket();
    EXPECT_EQ(ticket.size(), 2048u);
    EXPECT_EQ(ticket.find_first_not_of("A5"), std::string::npos);
    // This client has no entry point to cancel the ticket: both texts are forgotten all the same.
    steam.Logout();
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
