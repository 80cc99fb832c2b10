#include <algorithm>
#include <gmock/gmock.h>
#include <iterator>
#include <regex>
#include <set>

#include "flow/messengertest.h"
#include "support/sdklog.h"
#include "support/waituntil.h"

namespace vesk::test {
namespace {

/// The methods that the lines of a file and class name; the class with its file before it.
using Names = std::vector<std::pair<std::string, std::vector<std::string>>>;

const Names kEveryChannel = {
    {"vesk.cpp,VESK", {"CheckSequenceKeys", "CreateSequenceId"}},
    {"veskconfigmanager.cpp,VESKConfigManager", {"Get"}},
    {"veskdefine.cpp,ConvertLoginRet", {}},
    {"veskdefine.cpp,InnerLoginRet", {"resetLoginRet"}},
    // The scrambling cuts it at its "<", and then the byte before the last stays scrambled.
    {"veskdefine.h,VESKInnerObserverHoldYr", {}},
    {"veskfileutils.cpp,VESKFileUtils", {"ReadConfigFile", "ReadFile", "WriteFile"}},
    {"veskhttpclient.cpp,VESKHTTPClient",
     {"CreateRequestThread", "CreateRequestThreadCallBack", "ResetData", "SendPostRequest"}},
    {"veskhttpmanager.cpp,VESKHTTPManager",
     {"GetHTTPClient", "InitHttpClient", "OnHTTPClientCallBack", "Request", "RunRequest", "init"}},
    {"veskhttpparams.cpp,VESKHTTPParams", {"GenerateRequestID"}},
    {"vesklifecycleable.cpp,VESKLifeCycleAble", {"VESKLifeCycleAble"}},
    {"vesklogin.cpp,VESKLogin", {"BaseRetObserver", "Login", "LoginRetObserver"}},
    {"vesklogin.cpp,VESKLogin", {"SetLoginObserver"}},
    {"veskloginimpl.cpp,VESKLoginIMPL", {"LoginChannel", "Logout"}},
    {"veskloginmanager.cpp,VESKLoginManager",
     {"DeleteLoginRet", "GetLoginRet", "Login", "Logout", "OnLoginResp", "OnLogoutResp",
      "PluginLoginObserver", "PluginLogoutObserver", "SaveLoginRet", "SendLogoutRequest",
      "TimerRefreshToken", "checkLoginNotify"}},
    {"vesknetworkutils.cpp,VESKNetworkUtils", {"GetURL"}},
    {"vesknetworkutils.h,VESKNetworkUtils", {"HandleNetworkResponse"}},
    {"vesktaskmanager.cpp,VESKTaskManager", {"AddTask", "RemoveTask", "StartTimer", "StopTimer"}},
    {"veskthreadtimer.cpp,VESKThreadTimer", {"StartRoutine", "runloop", "start", "stop"}},
    {"veskutils.cpp,VESKUtils", {"GetRetMsg"}},
    {"veskloginsteam.cpp,VESKLoginSteam", {"InitSteamApi", "Login", "Logout"}},
    {"vesksteamwrapper.cpp,VESKSteamWrapper",
     {"GetAuthSessionTicket", "GetSteamID", "InitSteamApi", "Logout"}},
    {"vesklogin.cpp,VESKLogin", {"QrCodeRetObserver"}},
    {"veskloginmanager.cpp,VESKLoginManager",
     {"GetLoginPreCode", "GetPreCodePostData", "OnPreCodeResp"}},
    {"veskfrcallbacks.cpp,VESKFRWrapper", {"login_resp", "qrcode_resp"}},
    {"veskfrwrapper.cpp,VESKFRWrapper", {"InitializeOpenSDK", "Login", "Logout"}},
    {"veskloginferno.cpp,VESKLoginFerno",
     {"InitializeOpenSDK", "Logout", "OnInnerLoginNotify", "OnInnerQrCodeNotify", "QrCodeLogin"}},
};
const Names kKZOnly = {
    {"veskkzevents.cpp,VESKKZWrapper", {"OnKZOpenSDKCallback"}},
    {"veskkzwrapper.cpp,VESKKZWrapper",
     {"GetGenerateSerialNumber", "InitializeOpenSDK", "Logout", "OnKZOpenSDKCallback",
      "StartQrCodeLogin"}},
    {"veskloginkz.cpp,VESKLoginKZ",
     {"InitializeOpenSDK", "Logout", "OnInnerLoginNotify", "OnInnerQrCodeNotify", "QrCodeLogin"}},
};

void add(const Names& names, std::set<std::string>& all) {
    for (const auto& [scope, methods] : names) {
        if (methods.empty()) {
            all.insert(scope);
        }
        for (const std::string& method : methods) {
            all.insert(scope + "::" + method);
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
    add(kEveryChannel, wanted);
    if (std::filesystem::exists(game.path() / "kz_full")) {
        const Messenger kz(game, "kz", "KZOpenSDK.dll");
        channels.emplace_back("KZ");
        add(kKZOnly, wanted);
    }
    start();
    for (const std::string& name : channels) {
        VESKLogin::Login(name.c_str(), "", "", "");
        EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS) << name;
        EXPECT_EQ(logout().retCode, VESKError::SUCCESS) << name;
    }
    waitUntil("the backend to answer", [&] {
        return game.logLines("logout request success") == channels.size() &&
               game.logLines("timer runloop end") == channels.size();
    });
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
