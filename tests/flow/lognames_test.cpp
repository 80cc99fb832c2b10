#include <algorithm>
#include <cctype>
#include <gmock/gmock.h>
#include <regex>
#include <set>

#include "support/gametest.h"

namespace vesk::test {
namespace {

// A line names the file of its class, but for these: classes and functions that share a file, and
// two whose calls have moved. The scrambling cuts VESKInnerObserverHolder at its "<", and then the
// byte before the last is not what it was.
const std::set<std::string> kElsewhere = {
    "veskdefine.cpp,ConvertLoginRet",
    "veskdefine.cpp,InnerLoginRet::resetLoginRet",
    "veskdefine.h,VESKInnerObserverHoldYr",
    "veskfrcallbacks.cpp,VESKFRWrapper::login_resp",
    "veskfrcallbacks.cpp,VESKFRWrapper::qrcode_resp",
    "veskkzevents.cpp,VESKKZWrapper::OnKZOpenSDKCallback",
    "vesknetworkutils.h,VESKNetworkUtils::HandleNetworkResponse",
};

struct LogNames : MessengerTest {
    LogNames() : MessengerTest("Ferno", "ferno", "frlogin.dll") {}
};

// Whoever looks for a step of a login in the log looks for these.
TEST_F(LogNames, OfALoginAndLogoutOfEachChannelAreAClassAndItsFile) {
    std::vector<std::string> channels = {"Steam", "Ferno"};
    if (std::filesystem::exists(game.path() / "kz_full")) {
        const Messenger kz(game, "kz", "KZOpenSDK.dll");
        channels.emplace_back("KZ");
    }
    for (const std::string& name : channels) {
        EXPECT_EQ(login(name).retCode, VESKError::SUCCESS) << name;
        EXPECT_EQ(logout().retCode, VESKError::SUCCESS) << name;
    }
    waitForLogLine("logout request success", channels.size());
    waitForLogLine("timer runloop end", channels.size());
    std::set<std::string> differing;
    const std::regex place(R"(\[([a-z_]+)(\.(?:cpp|h),)Braxel::VESK::(([A-Za-z]*)[A-Za-z_:~]*))");
    for (const std::string& line : readSdkLog(game.path() / "veskrecord.log")) {
        std::smatch found;
        if (!std::regex_search(line, found, place)) {
            differing.insert(line);
            continue;
        }
        std::string file = found[4];
        std::transform(file.begin(), file.end(), file.begin(), ::tolower);
        const std::string whole = found.str(1) + found.str(2) + found.str(3);
        if (file + ".cpp," != found.str(1) + found.str(2) && kElsewhere.count(whole) == 0) {
            differing.insert(whole);
        }
    }
    EXPECT_THAT(differing, ::testing::IsEmpty());
}

} // namespace
} // namespace vesk::test
