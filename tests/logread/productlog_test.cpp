#include <algorithm>
#include <gmock/gmock.h>
#include <regex>

#include "logread/logbytes.h"
#include "support/gametest.h"

namespace vesk::test {
namespace {

using ::testing::HasSubstr;

/// A product that logs all it can.
struct ProductLog : MessengerTest {
    ProductLog() : MessengerTest("Ferno", "ferno", "frlogin.dll") {
        game.configure("VESK_CONFIG_LOG_ENABLE=1\nVESK_JSON_LOG_ENABLE=1");
        game.simulate("steamid=76561198012345678\nticket=C0FFEE17");
        script("ctt=ctt-1\nopenid=fr-1\nsessionkey=session-1\n");
    }

    std::string log() const { return readFile(game.path() / "veskrecord.log"); }

    /// Logs in through KZ, where there is one.
    bool loginOfKZ() {
        const bool there = std::filesystem::exists(game.path() / "kz_full");
        if (there) {
            const Messenger kz(game, "kz", "KZOpenSDK.dll");
            VESKLogin::Login("KZ", "", "", "");
            EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
        }
        return there;
    }
};

TEST_F(ProductLog, RedactedHoldsNoSecret) {
    backend.next({"auth/login", R"({"ret":0,"openid":"o-A","uid":"u-A","token":"t\"-A",)"
                                R"("user_name":"Ann Other","pf_key":"pfk-A"})"});
    login("Steam", R"({"password":"swordfish","other":"mackerel"})");
    logout();
    backend.next({"auth/login", R"({"ret":0,"token":"broken-token)"});
    startLogin();
    observer.nextLogin();
    const VESKLoginRet ret = scanAndLogin();
    std::vector<std::string> secrets = {
        "dev-key",  "k-key",     "76561198012345678", "C0FFEE17",
        "o-A",      "u-A",       "t\\\"-A",           "Ann Other",
        "pfk-A",    "swordfish", "mackerel",          "broken-token",
        "ctt-1",    "fr-1",      "session-1",         "https://ferno.example/qr/1",
        ret.openid, ret.token};
    if (loginOfKZ()) {
        secrets.insert(secrets.end(),
                       {"kz-openid-1", "kz-ctk-1", "SIM-SERIAL", "https://kz.example/qr/1"});
    }
    const std::string clear = printLog(log(), logread::appendAsText);
    const std::string redacted = printLog(log(), logread::appendAsText, {}, true);
    const std::regex made("(?:sig=|precode\":\"|password\":\")([\\w-]{8,})");
    for (std::sregex_iterator found(clear.begin(), clear.end(), made), end; found != end; ++found) {
        secrets.push_back((*found)[1]);
    }
    for (const std::string& secret : secrets) {
        EXPECT_NE(clear.find(secret), std::string::npos) << secret;
        const size_t at = redacted.find(secret);
        EXPECT_EQ(at, std::string::npos) << redacted.substr(at - std::min<size_t>(at, 200), 300);
    }
    EXPECT_GT(std::count(clear.begin(), clear.end(), '\n'), 300) << "a log of some length";
}

TEST_F(ProductLog, TellsTheLoginsOfEachChannel) {
    login();
    scanAndLogin();
    const bool kz = loginOfKZ();
    const std::string story = tellLogins(log());
    const std::string steps = "plugin answer\nbackend asked\nbackend answer: ret 0\n"
                              "result delivered: retCode 0\n  result   retCode 0, it worked\n";
    EXPECT_THAT(story, HasSubstr(", Steam, "));
    EXPECT_THAT(story, HasSubstr("\nrequest\nchannel starts\n" + steps + "\n"));
    EXPECT_THAT(story, HasSubstr(", Ferno, "));
    EXPECT_THAT(story, HasSubstr("\nrequest\npre-code asked for\npre-code answer: ret 0\n"
                                 "channel starts\nQR code shown\nQR code scanned\n" +
                                 steps));
    EXPECT_EQ(story.find(", KZ, ") != std::string::npos, kz) << story;
    EXPECT_EQ(story.find("QR code is: Success\n" + steps) != std::string::npos, kz) << story;
}

TEST_F(ProductLog, TellsWhyLoginsHaveFailed) {
    const std::string failures[] = {
        "  outside  the backend answered 4009, the request is refused: \"sig does not match",
        "  outside  libcurl reports 60, the backend's certificate is not trusted\n"
        "  remedy   look at cacert.pem",
        "  outside  Ferno login failed! Error type:10009 Error code:0\n  remedy   let the player try",
        "  result   none in this log; the last step is: frlogin.dll cannot be loaded\n"
        "  remedy   put the messenger's component beside the SDK",
    };
    const Answer preCode = {"auth/pcprecode", R"({"ret":0,"precode":"p"})"};
    game.configure("VESK_SDK_KEY=wrong");
    std::filesystem::remove(file);
    backend.next(preCode);
    startLogin();
    waitForLogLine("Load frlogin.dll failed");
    install("full");
    script("on_qrcode=1:qr:https://ferno.example,1:fail:10009:0");
    backend.next(preCode);
    startLogin();
    observer.nextLogin();
    login();
    backend.showCertificate("expired");
    login();
    for (const std::string& failure : failures) {
        EXPECT_THAT(tellLogins(log()), HasSubstr(failure));
    }
}

TEST_F(ProductLog, ProgramPrintsWhatItsOptionsAskFor) {
    login();
    const auto name = [&](const char* file) {
        return (game.path() / file).make_preferred().string();
    };
    const std::string program = name("vesk-logread");
    const auto run = [&](const std::string& arguments) {
        const std::string out = name("printed");
        const std::string command = program + " " + arguments + " >" + out + " 2>" + out + ".err";
        const int status = std::system(command.c_str()); // NOLINT
        return (status == 0 ? "" : "failed\n") + readFile(out);
    };
    const std::string file = name("veskrecord.log");
    EXPECT_THAT(run(file), HasSubstr("convert InnerLoginRet to VESKLoginRet finish"));
    EXPECT_THAT(run("--login " + file), HasSubstr("retCode 0, "));
    EXPECT_EQ(run("--json --level E " + file).find("{\"time\":\"20"), 0u);
    EXPECT_EQ(run("--since \"2199-01-01 00:00\" " + file), "");
    EXPECT_EQ(run("--since 00:00 " + file), run(file));
    EXPECT_THAT(run("--redact " + file), HasSubstr("VESK_SDK_KEY = ***"));
    for (const std::string& wrong :
         {"--since noon " + file, "--level X " + file, "--login --json " + file, "nowhere " + file,
          std::string("nowhere"), std::string("/dev/zero"),
          std::string("--since 01:00 /dev/zero")}) {
        EXPECT_EQ(run(wrong), "failed\n") << wrong;
    }
}

} // namespace
} // namespace vesk::test
