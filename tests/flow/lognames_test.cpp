#include <algorithm>
#include <gmock/gmock.h>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>

#include "support/gametest.h"

namespace vesk::test {
namespace {

// A file and its class with what its lines name, or a function without one. The scrambling cuts
// VESKInnerObserverHolder at its "<", and then the byte before the last is not what it was.
const char* const kSteamAndFerno = R"(
vesk.cpp,VESK:: CheckSequenceKeys CreateSequenceId
veskconfigmanager.cpp,VESKConfigManager:: Get
veskdefine.cpp,ConvertLoginRet
veskdefine.cpp,InnerLoginRet:: resetLoginRet
veskdefine.h,VESKInnerObserverHoldYr
veskfileutils.cpp,VESKFileUtils:: ReadConfigFile ReadFile WriteFile
veskfrcallbacks.cpp,VESKFRWrapper:: login_resp qrcode_resp
veskfrwrapper.cpp,VESKFRWrapper:: InitializeOpenSDK Login Logout
veskhttpclient.cpp,VESKHTTPClient:: CreateRequestThread CreateRequestThreadCallBack ResetData
veskhttpclient.cpp,VESKHTTPClient:: SendPostRequest
veskhttpmanager.cpp,VESKHTTPManager:: GetHTTPClient InitHttpClient OnHTTPClientCallBack Request
veskhttpmanager.cpp,VESKHTTPManager:: RunRequest init
veskhttpparams.cpp,VESKHTTPParams:: GenerateRequestID
vesklifecycleable.cpp,VESKLifeCycleAble:: VESKLifeCycleAble
vesklogin.cpp,VESKLogin:: BaseRetObserver Login LoginRetObserver QrCodeRetObserver
vesklogin.cpp,VESKLogin:: SetLoginObserver
veskloginferno.cpp,VESKLoginFerno:: InitializeOpenSDK Logout OnInnerLoginNotify
veskloginferno.cpp,VESKLoginFerno:: OnInnerQrCodeNotify QrCodeLogin
veskloginimpl.cpp,VESKLoginIMPL:: LoginChannel Logout
veskloginmanager.cpp,VESKLoginManager:: DeleteLoginRet GetLoginPreCode GetLoginRet Login Logout
veskloginmanager.cpp,VESKLoginManager:: GetPreCodePostData OnLoginResp OnLogoutResp
veskloginmanager.cpp,VESKLoginManager:: OnPreCodeResp PluginLoginObserver SaveLoginRet
veskloginmanager.cpp,VESKLoginManager:: PluginLogoutObserver SendLogoutRequest
veskloginmanager.cpp,VESKLoginManager:: TimerRefreshToken checkLoginNotify
veskloginsteam.cpp,VESKLoginSteam:: InitSteamApi Login Logout
vesknetworkutils.cpp,VESKNetworkUtils:: GetURL
vesknetworkutils.h,VESKNetworkUtils:: HandleNetworkResponse
vesksteamwrapper.cpp,VESKSteamWrapper:: GetAuthSessionTicket GetSteamID InitSteamApi Logout
vesktaskmanager.cpp,VESKTaskManager:: AddTask RemoveTask StartTimer StopTimer
veskthreadtimer.cpp,VESKThreadTimer:: StartRoutine runloop start stop
veskutils.cpp,VESKUtils:: GetRetMsg
)";
const char* const kKZOnly = R"(
veskkzevents.cpp,VESKKZWrapper:: OnKZOpenSDKCallback
veskkzwrapper.cpp,VESKKZWrapper:: GetGenerateSerialNumber InitializeOpenSDK Logout
veskkzwrapper.cpp,VESKKZWrapper:: OnKZOpenSDKCallback StartQrCodeLogin
veskloginkz.cpp,VESKLoginKZ:: InitializeOpenSDK Logout OnInnerLoginNotify OnInnerQrCodeNotify
veskloginkz.cpp,VESKLoginKZ:: QrCodeLogin
)";

void add(const char* list, std::set<std::string>& names) {
    std::istringstream words(list);
    std::string scope;
    for (std::string word; words >> word;) {
        if (word.back() == ':') {
            scope = word;
        } else {
            names.insert(word.find(',') == std::string::npos ? scope + word : word);
        }
    }
}

struct LogNames : MessengerTest {
    LogNames() : MessengerTest("Ferno", "ferno", "frlogin.dll") {}
};

// Whoever looks for a step of a login in the log looks for these.
TEST_F(LogNames, OfALoginAndLogoutOfEachChannelAreTheWantedOnes) {
    std::vector<std::string> channels = {"Steam", "Ferno"};
    std::set<std::string> wanted;
    add(kSteamAndFerno, wanted);
    if (std::filesystem::exists(game.path() / "kz_full")) {
        const Messenger kz(game, "kz", "KZOpenSDK.dll");
        channels.emplace_back("KZ");
        add(kKZOnly, wanted);
    }
    for (const std::string& name : channels) {
        EXPECT_EQ(login(name).retCode, VESKError::SUCCESS) << name;
        EXPECT_EQ(logout().retCode, VESKError::SUCCESS) << name;
    }
    waitForLogLine("logout request success", channels.size());
    waitForLogLine("timer runloop end", channels.size());
    std::set<std::string> named;
    const std::regex place(R"(\[([a-z_]+\.(?:cpp|h)),Braxel::VESK::([A-Za-z_:~]+))");
    for (const std::string& line : readSdkLog(game.path() / "veskrecord.log")) {
        std::smatch found;
        named.insert(std::regex_search(line, found, place) ? found.str(1) + "," + found.str(2)
                                                           : line);
    }
    std::vector<std::string> differing;
    std::set_symmetric_difference(named.begin(), named.end(), wanted.begin(), wanted.end(),
                                  std::back_inserter(differing));
    EXPECT_THAT(differing, ::testing::IsEmpty()) << "named or wanted, but not both";
}

} // namespace
} // namespace vesk::test
