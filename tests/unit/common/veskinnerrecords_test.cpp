#include "common/veskinnerrecords.h"

#include "common/veskdefine.h"
#include "unit/unittest.h"

namespace vesk::test {

class InnerRecords : public UnitTest {
protected:
    /// The answer of a backend with every member, and the record that it makes.
    const std::string answer =
        R"({"ret":0,"msg":"M","openid":"O","uid":"U","token":"T","token_expire_time":5000000000,)"
        R"("first":1,"reg_channel_dis":"R","user_name":"N","gender":2,"birthdate":"B",)"
        R"("picture_url":"P","pf":"F","pf_key":"K","need_name_auth":false,)"
        R"("channel_info":{"a": [1]},"seq":"S"})";
    const std::string record =
        R"({"methodNameID":0,"retCode":0,"retMsg":"Success","ret":0,"msg":"M","extraJson":"",)"
        R"("openid":"O","token":"T","token_expire_time":5000000000,"first":1,)"
        R"("reg_channel_dis":"R","user_name":"N","gender":2,"birthdate":"B","picture_url":"P",)"
        R"("pf":"F","pf_key":"K","need_name_auth":false,"channelID":0,"channel":"",)"
        R"("channel_info":"{\"a\":[1]}","uid":"U","seq":"S"})";

    /// A record in which nothing has its default.
    InnerLoginRet full() const {
        InnerLoginRet ret;
        ret.FromJson(record);
        ret.FromJson(R"({"methodNameID":112,"retCode":5,"extraJson":"E","need_name_auth":true,)"
                     R"("channelID":21,"channel":"Steam"})");
        ret.reserved1 = "r1";
        ret.reserved2 = 22;
        ret.reserved3 = "r3";
        ret.reserved4 = "r4";
        return ret;
    }
};

TEST_F(InnerRecords, FreshRecordsHaveTheirDefaultsAndTheMessageOfTheirCode) {
    write("VESKRetMsg.json", R"({"-1":"unset","5":"five"})");
    EXPECT_EQ(InnerBaseRet().ToJson(),
              R"({"methodNameID":0,"retCode":-1,"retMsg":"unset","thirdCode":-1,"thirdMsg":"",)"
              R"("extraJson":""})");
    EXPECT_EQ(InnerLoginRet(5).ToJson(),
              R"({"methodNameID":0,"retCode":5,"retMsg":"five","ret":-1,"msg":"","extraJson":"",)"
              R"("openid":"","token":"","token_expire_time":0,"first":0,"reg_channel_dis":"",)"
              R"("user_name":"","gender":0,"birthdate":"","picture_url":"","pf":"","pf_key":"",)"
              R"("need_name_auth":false,"channelID":0,"channel":"","channel_info":"","uid":"",)"
              R"("seq":""})");
}

TEST_F(InnerRecords, GoodAnswerFillsEveryFieldAndWrongTypesLeaveThem) {
    const std::string wrong =
        R"({"ret":0,"msg":1,"openid":2.5,"uid":true,"token":null,"token_expire_time":"7",)"
        R"("first":1.0,"reg_channel_dis":3,"user_name":4,"gender":"2","birthdate":5,)"
        R"("picture_url":false,"pf":6,"pf_key":7,"need_name_auth":1,"channel_info":8,"seq":9})";
    InnerLoginRet ret;
    for (const std::string& body : {answer, wrong, std::string(R"({"ret":0})")}) {
        ConvertLoginRet(ret, 0, body, "s");
        EXPECT_EQ(ret.ToJson(), record) << body;
    }
    InnerLoginRet back;
    back.FromJson(record);
    EXPECT_EQ(back.ToJson(), record);
    EXPECT_EQ(logged("][ s ] convertLoginRet loginRet:{"), 3u);
}

TEST_F(InnerRecords, ResetForgetsTheAccountButNotTheOutcome) {
    InnerLoginRet ret = full();
    const VESKLoginRet shown = ToPublic(ret); // the rest of it is in SteamLogin
    EXPECT_EQ(shown.reserved1 + shown.reserved3, "r1r3");
    EXPECT_EQ(shown.reserved2, 22);
    newMessages();
    ret.resetLoginRet();
    EXPECT_THAT(newMessages(), ElementsAre("reset login result"));
    EXPECT_EQ(ret.ToJson(),
              R"({"methodNameID":-1,"retCode":5,"retMsg":"Success","ret":0,"msg":"M",)"
              R"("extraJson":"E","openid":"","token":"","token_expire_time":-1,"first":-1,)"
              R"("reg_channel_dis":"","user_name":"","gender":0,"birthdate":"","picture_url":"",)"
              R"("pf":"","pf_key":"","need_name_auth":false,"channelID":-1,"channel":"",)"
              R"("channel_info":"","uid":"","seq":""})");
    EXPECT_STREQ(ret.reserved1.c_str(), "r1");
    EXPECT_EQ(ret.reserved2, 0);
    EXPECT_STREQ(ret.reserved3.c_str(), "r3");
    EXPECT_STREQ(ret.reserved4.c_str(), "");
}

} // namespace vesk::test
