#include <ctime>
#include <regex>

#include "support/gametest.h"

namespace vesk::test {

namespace {

using SteamLogin = GameTest;

const std::string kDeviceAndChannel =
    R"("device_info":{"uuid":"","device_language":"","app_version":"","screen_dpi":0.0,)"
    R"("resolution":"","trade_mark":"WINDOWS","manufacturer":"WINDOWS","model":"","apn":"",)"
    R"("ram_info":"","rom_info":"","cpu_info":""},"channel_dis":"Windows"})";

std::string bodyWith(const std::string& steamId, const std::string& ticket) {
    return R"({"channel_info":{"steamid":")" + steamId + R"(","ticket":")" + ticket + R"("},)" +
           kDeviceAndChannel;
}

TEST_F(SteamLogin, IsOneSignedRequestWhoseAnswerIsDeliveredAndHeld) {
    backend.next(
        loginAnswer("A", R"(,"token_expire_time":4102444800,"channel_info":{"level": 7})"));
    startLogin();
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

    EXPECT_EQ(held().methodNameID, kMethodNameGetLoginRet);
    EXPECT_EQ(held().retCode, VESKError::SUCCESS);
    EXPECT_EQ(held().openid, "openid-A");
    EXPECT_EQ(held().token, "token-A");

    EXPECT_EQ(backend.requests("/").size(), 1u);
    const Request request = backend.waitForRequest("auth/login");
    EXPECT_EQ(request.verdict, "ok");
    EXPECT_EQ(request.body, bodyWith("76561198000000001", "0AFF"));
    const std::regex query(
        "channelid=21&gameid=1106&os=5&seq=1106-[0-9A-F]{8}-[0-9A-F]{4}-[0-9a-f]{4}-[0-9A-F]{4}-"
        "[0-9A-F]{12}-[0-9]+-1&ts=[0-9]+&version=5\\.0\\.000\\.0005&sig=[0-9a-f]{32}");
    EXPECT_TRUE(std::regex_match(request.query, query)) << request.query;
}

TEST_F(SteamLogin, ClientThatIsMissingIsAnsweredInsideLoginAndOneWithoutAUserLogsIn) {
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

    game.installSteam("steam_partial");
    backend.next(loginAnswer("A"));
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    EXPECT_EQ(backend.requests("/").size(), 1u);
    EXPECT_EQ(backend.waitForRequest("auth/login").body, bodyWith("", ""));
    EXPECT_EQ(game.logLines("Get SteamAPI_RestartAppIfNecessary func failed"), 1u);
    EXPECT_EQ(game.logLines("Get SteamAPI_SteamUser_v020 func failed"), 1u);
    EXPECT_EQ(game.logLines("steam_user_ is NULL"), 2u);
    VESKLogin::UnInstall();
    // The missing shutdown entry is reported under the name of another one.
    EXPECT_EQ(game.logLines("Get SteamAPI_Init func failed"), 1u);
}

TEST_F(SteamLogin, ClientThatRefusesIsAskedAgainAndItsCredentialsGoOutAsTheyAre) {
    for (const char* settings : {"restart=1", "init=0"}) {
        game.simulate(settings);
        EXPECT_EQ(login().retCode, VESKError::CHANNEL_INIT_FAILED) << settings;
    }
    EXPECT_TRUE(backend.requests("/").empty());
    EXPECT_EQ(game.steamCalls("Init"), 1u);

    const char* const rows[][3] = {
        {"running=0\nticket_handle=0", "76561198000000001", ""},
        {"steamid=18446744073709551615\nticket=00abcdef10", "-1", "00ABCDEF10"}};
    for (const auto& [settings, steamId, ticket] : rows) {
        game.simulate(settings);
        backend.next(loginAnswer("A"));
        EXPECT_EQ(login().retCode, VESKError::SUCCESS);
        EXPECT_EQ(backend.waitForRequest("auth/login").body, bodyWith(steamId, ticket));
    }
    EXPECT_EQ(game.logLines("Steam Client is running:0"), 1u);
}

TEST_F(SteamLogin, TicketIsReusedAfterARefusalAndEndsWithTheLoginWithoutAWord) {
    backend.next({"auth/login", R"({"ret":3})"});
    EXPECT_EQ(login().retCode, VESKError::SERVER_ERROR);
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    for (const char* call :
         {"Init", "SteamUser_v020", "ISteamUser_GetSteamID", "ISteamUser_GetAuthSessionTicket"}) {
        EXPECT_EQ(game.steamCalls(call), 1u) << call;
    }
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    EXPECT_EQ(observer.baseCount(), 0u);
    EXPECT_EQ(game.steamCalls("ISteamUser_CancelAuthTicket"), 1u);
    EXPECT_EQ(game.steamCalls("ISteamUser_GetAuthSessionTicket"), 2u);
    EXPECT_TRUE(backend.requests("auth/logout").empty());
}

using LoginFlow = GameTest;

TEST_F(LoginFlow, ExtraJsonIsCheckedButNeitherStopsALoginNorLeavesTheGame) {
    const char* const wrongType = "unknown error , it should be String type";
    const char* const notAnObject = "unknown error occur while parser json or val is NULL";
    const struct {
        std::string extraJson;
        size_t wrongTypes, notObjects; ///< log lines until now
    } rows[] = {{"", 0, 0},
                {R"({"password":"abc"})", 0, 0},
                {R"({"other":1})", 0, 0},
                {R"({"password":1})", 1, 0},
                {"no JSON", 1, 1},
                {std::string(100000, '['), 1, 2}};
    for (const auto& row : rows) {
        EXPECT_EQ(login("Steam", row.extraJson).retCode, VESKError::SUCCESS);
        EXPECT_EQ(game.logLines(wrongType), row.wrongTypes) << row.extraJson.substr(0, 20);
        EXPECT_EQ(game.logLines(notAnObject), row.notObjects) << row.extraJson.substr(0, 20);
    }
    for (const Request& request : backend.requests("auth/login")) {
        EXPECT_EQ(request.verdict, "ok");
        EXPECT_EQ(request.body.find("password"), std::string::npos);
    }
}

TEST_F(LoginFlow, UnknownChannelIsNeverAnswered) {
    for (const char* channel : {"steam", "Steamy", "", "Guest"}) {
        startLogin(channel);
    }
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    EXPECT_EQ(observer.loginCount(), 1u);
    EXPECT_EQ(observer.baseCount(), 0u);
    EXPECT_EQ(backend.requests("/").size(), 1u);
}

using Logout = GameTest;

TEST_F(Logout, IsHeardBeforeTheBackendAnswersAndForgetsTheLogin) {
    backend.next(loginAnswer("A"));
    login();
    backend.next({"auth/logout", "", 200, 0, "hang"});
    VESKLogin::Logout("Steam", "", false);
    ASSERT_EQ(observer.baseCount(), 1u); // inside the call, as Steam answers at once
    const VESKBaseRet ret = observer.nextBase().ret;
    EXPECT_EQ(ret.methodNameID, kMethodNameLogout);
    EXPECT_EQ(ret.retCode, VESKError::SUCCESS);
    EXPECT_EQ(ret.thirdCode, -1); // the channel's answer has no code of its own
    EXPECT_EQ(ret.thirdMsg, "");

    const Request request = backend.waitForRequest("auth/logout");
    EXPECT_EQ(request.verdict, "ok");
    EXPECT_EQ(request.body, R"({"token":"token-A","openid":"openid-A"})");
    EXPECT_EQ(request.query.find("channelid=21&gameid=1106&os=5&seq=1106-"), 0u);
    EXPECT_EQ(game.logLines("logout request success"), 0u);

    EXPECT_EQ(game.steamCalls("ISteamUser_CancelAuthTicket"), 1u);
    EXPECT_FALSE(std::filesystem::exists(game.loginCache()));
    VESKLoginRet none;
    EXPECT_FALSE(VESKLogin::GetLoginRet(none));
    EXPECT_EQ(none.retCode, VESKError::NO_STORED_LOGIN);
    EXPECT_EQ(game.logLines("remove task success :refreshTokenTask"), 1u);
}

TEST_F(Logout, ReachesTheChannelThatIsAskedAndTheBackendUnlessItIsOfTheChannelOnly) {
    const struct {
        const char* channel;
        bool channelOnly;
        int64_t expiresIn;
        size_t cancelled, told; ///< until now
    } rows[] = {{"", false, -10, 1, 1}, {"Guest", false, 60, 1, 2}, {"", true, 60, 2, 2}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.channel);
        const std::time_t expiry = std::time(nullptr) + row.expiresIn;
        backend.next(loginAnswer("A", ",\"token_expire_time\":" + std::to_string(expiry)));
        EXPECT_EQ(login().retCode, VESKError::SUCCESS);
        const VESKBaseRet ret = logout(row.channel, row.channelOnly);
        EXPECT_EQ(ret.methodNameID, kMethodNameLogout);
        EXPECT_EQ(ret.retCode, VESKError::SUCCESS);
        EXPECT_EQ(game.steamCalls("ISteamUser_CancelAuthTicket"), row.cancelled);
        EXPECT_EQ(game.logLines("sendLogoutRequest"), row.told);
        EXPECT_EQ(isHeld(), row.channelOnly);
        EXPECT_EQ(backend.waitForRequest("auth/logout", row.told).verdict, "ok");
    }
}

TEST_F(Logout, WithoutALoginReportsWhatIsKnown) {
    const struct {
        const char* file;
        int32_t retCode;
    } rows[] = {{"", VESKError::NO_STORED_LOGIN}, {"KZ1", -1}, {"Steamuid-old", -1}};
    for (const auto& row : rows) {
        writeFile(game.loginCache(), row.file);
        const VESKBaseRet ret = logout("Steam");
        EXPECT_EQ(ret.methodNameID, kMethodNameLogout) << row.file;
        EXPECT_EQ(ret.retCode, row.retCode) << row.file;
        EXPECT_NE(ret.retMsg, "") << row.file;
        EXPECT_EQ(readFile(game.loginCache()), row.file);
    }
    EXPECT_TRUE(backend.requests("/").empty());
    // A login tells that the remembered player was not logged out.
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    const VESKBaseRet ret = observer.nextBase().ret;
    EXPECT_EQ(ret.methodNameID, kMethodNameLogout);
    EXPECT_EQ(ret.retCode, -1);
    EXPECT_EQ(game.steamCalls("ISteamUser_CancelAuthTicket"), 0u);
}

using AutoLogin = GameTest;

TEST_F(AutoLogin, IsRefusedWithoutAStoredLoginOfTheMessenger) {
    const char* const onlyKz = "Auto login only support on KZ channel";
    const VESKLoginRet nothingStored = autoLogin();
    EXPECT_EQ(nothingStored.retCode, VESKError::NO_STORED_LOGIN);
    EXPECT_NE(nothingStored.retMsg, "");
    EXPECT_EQ(nothingStored.methodNameID, kMethodNameAutoLogin);

    writeFile(game.loginCache(), "Steamuid-old");
    for (int i = 0; i < 2; ++i) { // of the file, and of a login that is held
        const VESKLoginRet ret = autoLogin();
        EXPECT_EQ(ret.retCode, VESKError::AUTOLOGIN_NOT_ALLOWED);
        EXPECT_EQ(ret.retMsg, onlyKz);
        EXPECT_EQ(ret.methodNameID, kMethodNameAutoLogin);
        EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    }
}

} // namespace

} // namespace vesk::test
