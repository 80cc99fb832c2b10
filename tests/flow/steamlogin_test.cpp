#include <regex>

#include "flow/flowtest.h"

namespace vesk::test {
namespace {

using SteamLogin = FlowTest;

const std::string kDeviceAndChannel =
    R"("device_info":{"uuid":"","device_language":"","app_version":"","screen_dpi":0.0,)"
    R"("resolution":"","trade_mark":"WINDOWS","manufacturer":"WINDOWS","model":"","apn":"",)"
    R"("ram_info":"","rom_info":"","cpu_info":""},"channel_dis":"Windows"})";

std::string bodyWith(const std::string& steamId, const std::string& ticket) {
    return R"({"channel_info":{"steamid":")" + steamId + R"(","ticket":")" + ticket + R"("},)" +
           kDeviceAndChannel;
}

TEST_F(SteamLogin, DeliversWhatTheBackendAnsweredAndHoldsIt) {
    backend.next(
        loginAnswer("A", R"(,"token_expire_time":4102444800,"channel_info":{"level": 7})"));
    start();
    VESKLogin::Login("Steam", "", "", "");
    const auto [ret, thread] = observer.nextLogin();

    EXPECT_NE(thread, std::this_thread::get_id());
    EXPECT_EQ(ret.methodNameID, kMethodNameLogin);
    EXPECT_EQ(ret.retCode, VESKError::SUCCESS);
    EXPECT_EQ(ret.retMsg, "Success");
    EXPECT_EQ(ret.extraJson, "");
    EXPECT_EQ(ret.openid + ret.token, "openid-Atoken-A"); // the rest of it is in AnswerFaults
    EXPECT_EQ(ret.channelID, 21);
    EXPECT_EQ(ret.channel, "Steam");
    EXPECT_EQ(ret.channelInfo, R"({"level":7})");
    EXPECT_EQ(readFile(game.loginCache()), "Steamuid-A");

    VESKLoginRet held;
    EXPECT_TRUE(VESKLogin::GetLoginRet(held));
    EXPECT_EQ(held.methodNameID, kMethodNameGetLoginRet);
    EXPECT_EQ(held.retCode, VESKError::SUCCESS);
    EXPECT_EQ(held.openid, "openid-A");
    EXPECT_EQ(held.token, "token-A");
}

TEST_F(SteamLogin, SendsOneSignedRequestAndNoPreCode) {
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);

    EXPECT_EQ(backend.requests("/").size(), 1u);
    const Request request = backend.waitForRequest("auth/login");
    EXPECT_EQ(request.verdict, "ok");
    EXPECT_EQ(request.body, bodyWith("76561198000000001", "0AFF"));
    const std::regex query(
        "channelid=21&gameid=1106&os=5&seq=1106-[0-9A-F]{8}-[0-9A-F]{4}-[0-9a-f]{4}-[0-9A-F]{4}-"
        "[0-9A-F]{12}-[0-9]+-1&ts=[0-9]+&version=5\\.0\\.000\\.0005&sig=[0-9a-f]{32}");
    EXPECT_TRUE(std::regex_match(request.query, query)) << request.query;
}

TEST_F(SteamLogin, FailedStartIsAnsweredInsideLoginWithoutARequest) {
    std::filesystem::remove(game.path() / "steam_api64.dll");
    start();
    VESKLogin::Login("Steam", "", "", "");
    ASSERT_EQ(observer.loginCount(), 1u);
    const auto [ret, thread] = observer.nextLogin();

    EXPECT_EQ(thread, std::this_thread::get_id());
    EXPECT_EQ(ret.retCode, VESKError::CHANNEL_INIT_FAILED);
    EXPECT_EQ(ret.methodNameID, kMethodNameLogin);
    EXPECT_EQ(ret.retMsg, "Steam SDK init failed! Check your steam_appid.txt file and Steam Client "
                          "must be running");
    EXPECT_EQ(ret.retMsg.size(), 87u);

    game.installSteam("steam_full");
    for (const char* settings : {"restart=1", "init=0"}) {
        game.simulate(settings);
        EXPECT_EQ(login().retCode, VESKError::CHANNEL_INIT_FAILED) << settings;
    }
    EXPECT_TRUE(backend.requests("/").empty());
    EXPECT_EQ(game.steamCalls("Init"), 1u);

    game.simulate("running=0");
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    EXPECT_EQ(game.logLines("Steam Client is running:0"), 1u);
}

TEST_F(SteamLogin, ClientWithoutInitEntryFailsToStart) {
    game.installSteam("steam_noinit");
    EXPECT_EQ(login().retCode, VESKError::CHANNEL_INIT_FAILED);
    EXPECT_TRUE(backend.requests("/").empty());
    EXPECT_EQ(game.logLines("Get SteamAPI_Init func failed"), 1u);
}

TEST_F(SteamLogin, ClientWithoutUserEntryStillSendsAnEmptyCredential) {
    game.installSteam("steam_partial");
    backend.next(loginAnswer("A"));
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    EXPECT_EQ(backend.waitForRequest("auth/login").body, bodyWith("", ""));
    EXPECT_EQ(game.logLines("Get SteamAPI_RestartAppIfNecessary func failed"), 1u);
    EXPECT_EQ(game.logLines("Get SteamAPI_SteamUser_v020 func failed"), 1u);
    EXPECT_EQ(game.logLines("steam_user_ is NULL"), 2u);

    VESKLogin::UnInstall();
    // The missing shutdown entry is reported under the name of another one.
    EXPECT_EQ(game.logLines("Get SteamAPI_Init func failed"), 1u);
}

TEST_F(SteamLogin, SteamIdGoesOutAsASignedNumberAndTheTicketInUpperCase) {
    const char* const rows[][3] = {
        {"ticket_handle=0", "76561198000000001", ""},
        {"steamid=18446744073709551615\nticket=00abcdef10", "-1", "00ABCDEF10"}};
    for (const auto& [settings, steamId, ticket] : rows) {
        game.simulate(settings);
        backend.next(loginAnswer("A"));
        EXPECT_EQ(login().retCode, VESKError::SUCCESS);
        EXPECT_EQ(backend.waitForRequest("auth/login").body, bodyWith(steamId, ticket));
    }
}

TEST_F(SteamLogin, WithoutAnAppIdSteamIsNotAskedForARestart) {
    game.configure("STEAM_APP_ID=");
    game.simulate("restart=1");
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    EXPECT_EQ(game.steamCalls("RestartAppIfNecessary"), 0u);
}

TEST_F(SteamLogin, LoginAfterARefusedOneReusesTheTicket) {
    backend.next({"auth/login", R"({"ret":3})"});
    EXPECT_EQ(login().retCode, VESKError::SERVER_ERROR);
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    for (const char* call :
         {"Init", "SteamUser_v020", "ISteamUser_GetSteamID", "ISteamUser_GetAuthSessionTicket"}) {
        EXPECT_EQ(game.steamCalls(call), 1u) << call;
    }
}

TEST_F(SteamLogin, LoginAfterALoginEndsTheOldOneWithoutAWord) {
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    EXPECT_EQ(observer.baseCount(), 0u);
    EXPECT_EQ(game.steamCalls("ISteamUser_CancelAuthTicket"), 1u);
    EXPECT_EQ(game.steamCalls("ISteamUser_GetAuthSessionTicket"), 2u);
    EXPECT_TRUE(backend.requests("auth/logout").empty());
}

} // namespace
} // namespace vesk::test
