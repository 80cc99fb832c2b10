#include "foundation/tools/vesknetworkutils.h"

#include "foundation/tools/md5.h"
#include "foundation/tools/veskhttpparams.h"
#include "login/vesklogoutret.h"
#include "unit/unittest.h"

namespace vesk::test {

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

TEST_F(NetworkUtils, RequestIdsCountFrom10001AndACopyKeepsItsOwn) {
    const VESKHTTPParams first(HTTP_OPT_GET, "u", nullptr, "", nullptr);
    const VESKHTTPParams copy = first;
    EXPECT_EQ(copy.reqSeq, 10001);
    EXPECT_EQ(VESKHTTPParams(HTTP_OPT_GET, "u", nullptr, "", nullptr).reqSeq, 10002);
    EXPECT_THAT(newMessages(), ElementsAre("[VESK HTTP] httpparams generate new requestid :10001",
                                           "[VESK HTTP] httpparams generate new requestid :10002"));
}

TEST_F(NetworkUtils, AnswerToALogoutBecomesARecord) {
    write("VESKRetMsg.json", R"({"0":"good","5":"bad","24":"no way"})");
    const Rows<int32_t, std::string, int32_t, int32_t, const char*, int32_t, const char*> rows = {
        {0, "{}", 0, 0, "good", 0, "old"},
        {0, "not JSON", 0, 0, "good", 0, "old"},
        {0, R"({"ret":9,"msg":"no"})", 0, 0, "good", 0, "old"},
        {0, "{}", 3, 5, "bad", 3, "old"},
        {0, "", 3, 5, "server returns data exception", 0, "old"},
        {28, "", 0, 24, "no way", 28, "network library error"},
        {404, "{}", 0, 24, "no way", 404, "network library error"},
    };
    for (const auto& [result, body, thirdBefore, code, message, third, thirdMsg] : rows) {
        VESKLogoutRet ret;
        EXPECT_EQ(ret.thirdCode, 0);
        ret.thirdCode = thirdBefore;
        ret.thirdMsg = "old";
        VESKNetworkUtils::HandleNetworkResponse(result, body, ret, "s");
        EXPECT_EQ(ret.retCode, code) << body;
        EXPECT_EQ(ret.retMsg, message) << body;
        EXPECT_EQ(ret.thirdCode, third) << body;
        EXPECT_EQ(ret.thirdMsg, thirdMsg) << body;
    }
    EXPECT_EQ(logged("][ s ], handle network response data with ret : 404 and respBody : {}"), 1u);
    EXPECT_EQ(logged("][ s ], json to struct VESKLogoutRet start"), 4u);
    EXPECT_EQ(logged("][ s ], json to struct VESKLogoutRet finish"), 4u);
}

} // namespace vesk::test
