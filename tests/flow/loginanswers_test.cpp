#include "flow/flowtest.h"

namespace vesk::test {
namespace {

using LoginAnswers = FlowTest;

TEST_F(LoginAnswers, EachFailureHasItsCodesAndMessage) {
    const std::string deep(100000, '[');
    const std::string closed = deep + std::string(100000, ']');
    const struct {
        Answer answer;
        int32_t retCode, thirdCode;
        const char *retMsg, *thirdMsg;
    } rows[] = {
        {{"", R"({"ret":1001,"msg":"no"})"}, 5, 1001, "Server Error", "no"},
        {{"", R"({"ret":0,"need_name_auth":true})"}, 20, 0, "Need real name auth", ""},
        {{"", R"({"openid":"without ret"})"}, 5, -1, "Server Error", ""},
        {{"", R"({"ret":"0"})"}, 5, -1, "Server Error", ""},
        {{"", R"({"ret":0.0})"}, 5, -1, "Server Error", ""},
        {{"", R"({"ret":4294967296})"}, 5, -1, "Server Error", ""},
        {{"", "7"}, 5, 0, "Parse respBody error", ""},
        {{"", "[]"}, 5, -1, "Server Error", ""},
        {{"", ""}, 5, 0, "resp body empty", ""},
        {{"", "no JSON"}, 5, 0, "Parse respBody error", ""},
        {{"", R"({"ret":0,"openid":"cut)"}, 5, 0, "Parse respBody error", ""},
        {{"", deep}, 5, 0, "Parse respBody error", ""},
        {{"", closed}, 5, 0, "Parse respBody error", ""},
        {{"", "gone", 404}, 4, 404, "CURLCode for more details", ""},
        {{"", R"({"ret":0})", 500}, 4, 500, "CURLCode for more details", ""},
    };
    for (const auto& row : rows) {
        Answer answer = row.answer;
        answer.path = "auth/login";
        backend.next(answer);
        const VESKLoginRet ret = login();
        const std::string label = answer.body.substr(0, 40);
        EXPECT_EQ(ret.retCode, row.retCode) << label;
        EXPECT_EQ(ret.thirdCode, row.thirdCode) << label;
        EXPECT_EQ(ret.retMsg, row.retMsg) << label;
        EXPECT_EQ(ret.thirdMsg, row.thirdMsg) << label;
        EXPECT_EQ(ret.methodNameID, kMethodNameLogin) << label;
        VESKLoginRet held;
        EXPECT_FALSE(VESKLogin::GetLoginRet(held)) << label;
        EXPECT_EQ(held.retCode, VESKError::NO_STORED_LOGIN) << label;
    }
}

} // namespace
} // namespace vesk::test
