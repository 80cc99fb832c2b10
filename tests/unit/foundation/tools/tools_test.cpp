#include "foundation/tools/md5.h"
#include "foundation/tools/veskhttpparams.h"
#include "foundation/tools/vesknetworkutils.h"
#include "foundation/tools/veskutils.h"
#include "unit/unittest.h"
#include "vesk/veskerror.h"

namespace vesk::test {

using Md5 = UnitTest;

TEST_F(Md5, TextsOfTheRfcAndEveryLengthThatIsPaddedInAnotherWay) {
    // Those of the letter a are OpenSSL's.
    const Rows<std::string, const char*> rows = {
        {"", "d41d8cd98f00b204e9800998ecf8427e"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {std::string("a\0\xff", 3), "b400e11f5b771d40145d1dc70b3d7b8c"},
        {std::string(55, 'a'), "ef1772b6dff9a122358552954ad0df65"},
        {std::string(56, 'a'), "3b0c8ac703f828b04c6c197006d17218"},
        {std::string(64, 'a'), "014842d480b571495a4a0363793f7367"},
        {std::string(70000, 'a'), "0b21388e04a856f824a29c58d71c8d40"},
    };
    for (const auto& [text, digest] : rows) {
        EXPECT_EQ(MD5::Hex(text), digest) << text;
    }
}

using NetworkUtils = UnitTest;

TEST_F(NetworkUtils, SignatureCoversPathQueryBodyAndKeyOrTheTimeInstead) {
    EXPECT_EQ(VESKNetworkUtils::BuildURL({"https://base", "1106", "K", 1700000000}, "auth/login", 1,
                                         "", "s1"),
              "https://base/v2/auth/login?channelid=1&gameid=1106&os=5&seq=s1&ts=1700000000"
              "&version=5.0.000.0005&sig=92e0473d7619f54e596b9a50f066ec39");
    const std::string start = "channelid=21&gameid=g d&os=5";
    const std::string end = "&ts=-5&version=5.0.000.0005";
    const Rows<std::string, const char*, std::string, std::string> rows = {
        {"auth/logout", "", start + end, "/v2/auth/logout?" + start + end + "{}key"},
        {"auth/login", "a&b", start + "&seq=a&b" + end,
         "/v2/auth/login?" + start + "&seq=a&b" + end + "{}key"},
        {"x/auth/decrypt2", "s", start + "&seq=s" + end, "-5{}key"},
    };
    for (const auto& [action, seqID, query, signedText] : rows) {
        EXPECT_EQ(VESKNetworkUtils::BuildURL({"", "g d", "key", -5}, action, 21, "{}", seqID),
                  "/v2/" + action + "?" + query + "&sig=" + MD5::Hex(signedText));
    }
}

using ReturnMessages = UnitTest;

TEST_F(ReturnMessages, FilesAreLookedForAtEachCallUntilOneWithTextsIsReadOnce) {
    EXPECT_EQ(VESKUtils::GetRetMsg(0), "");
    EXPECT_THAT(newMessages(),
                ElementsAre(_, _, "miss config file :VESKRetMsg_.json", _, _,
                            "miss VESKRetMsg file in assert(Android) or VESKAppSetting.bundle(iOS)",
                            "retMsgMap empty"));
    write("VESKRetMsg.json", R"({"0":"second","1":"second"})");
    // A broken first file is no reason to read the second.
    for (const char* broken : {R"({"0":)", "[]", "{}", R"({"0":7})"}) {
        write("VESKRetMsg_.json", broken);
        EXPECT_EQ(VESKUtils::GetRetMsg(0), "") << broken;
    }
    write("VESKRetMsg_.json", R"({"5":"old","-1":"unset","5":"five","7":8,"17":["x"]})");
    const Rows<int32_t, const char*> rows = {{5, "five"}, {-1, "unset"}, {7, ""}, {17, ""}};
    for (const auto& [code, message] : rows) {
        EXPECT_EQ(VESKUtils::GetRetMsg(code), message) << code;
        std::filesystem::remove(folder / "VESKRetMsg_.json");
    }
    EXPECT_EQ(VESKUtils::GetRetMsg(1), "");
}

TEST_F(ReturnMessages, ShippedFileHasATextForEachCode) {
    write("VESKRetMsg.json", read("shipped/VESKRetMsg.json"));
    EXPECT_EQ(VESKUtils::GetRetMsg(VESKError::SUCCESS), "Success");
    for (const int32_t code :
         {-1, VESKError::SUCCESS, VESKError::NO_LOGIN, VESKError::NETWORK_ERROR,
          VESKError::SERVER_ERROR, VESKError::AUTOLOGIN_NOT_ALLOWED, VESKError::CHANNEL_INIT_FAILED,
          VESKError::NEED_REALNAME, VESKError::NETWORK_RESPONSE_ERROR, VESKError::NO_STORED_LOGIN,
          VESKError::TOKEN_EXPIRED, VESKError::CHANNEL_LOGIN_FAILED}) {
        EXPECT_NE(VESKUtils::GetRetMsg(code), "") << code;
    }
}

} // namespace vesk::test
