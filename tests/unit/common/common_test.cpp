#include <atomic>
#include <regex>
#include <set>

#include "common/vesk.h"
#include "common/veskchannelfacts.h"
#include "common/veskdefine.h"
#include "common/veskinnerrecords.h"
#include "login/veskloginresults.h"
#include "unit/unittest.h"

namespace vesk::test {

using Identity = UnitTest;

TEST_F(Identity, SequenceWrapsAfterItsLimit) {
    const Rows<uint32_t, uint32_t> rows = {
        {0, 1}, {7, 8}, {419999999, 420000000}, {420000000, 1}, {0xFFFFFFFF, 1}};
    for (const auto& [counter, next] : rows) {
        EXPECT_EQ(VESK::NextSequence(counter), next) << counter;
    }
}

TEST_F(Identity, SequenceIdNamesGameDeviceTimeAndNumber) {
    write("VESKConfig.ini", "VESK_GAME_ID=1106");
    const std::regex form("1106-([0-9A-F]{8}-[0-9A-F]{4}-[0-9a-f]{4}-[0-9A-F]{4}-[0-9A-F]{12})"
                          "-([0-9]+)-([0-9]+)");
    for (const char* number : {"1", "2"}) {
        const std::string id = VESK::CreateSequenceId();
        std::smatch match;
        ASSERT_TRUE(std::regex_match(id, match, form)) << id;
        EXPECT_EQ(match[1], VESK::GetUUID());
        EXPECT_LE(std::abs(std::stoll(match[2]) - now()), 5);
        EXPECT_EQ(match[3], number);
        EXPECT_EQ(logged("]current SeqId " + id + " "), 1u);
    }
    EXPECT_EQ(logged("]from storage GameId 1106, UUID , SeqId primary key "), 1u);
    EXPECT_EQ(logged("]not found UUID , create new " + VESK::GetUUID()), 1u);
    EXPECT_EQ(logged("config from"), 0u); // the file alone was asked
}

TEST_F(Identity, EightThreadsNeverMakeTheSameId) {
    std::vector<std::string> made(400);
    onEightThreads([&](int thread) {
        const auto first = static_cast<size_t>(thread) * 50;
        for (size_t i = 0; i < 50; ++i) {
            made[first + i] = VESK::CreateSequenceId();
        }
    });
    EXPECT_EQ(std::set<std::string>(made.begin(), made.end()).size(), 400u);
}

TEST_F(Identity, DeviceInformationCanBeSwitchedOff) {
    write("VESKConfig.ini", "VESK_DEVICE_INFO=0");
    EXPECT_EQ(VESK::GetDeviceInfo(), "{}");
}

TEST(ChannelFacts, AreThoseOfTheNameExactly) {
    const VESKChannelFacts& kz = ChannelFacts("KZ");
    EXPECT_EQ(kz.preCodeChannelID, 2);
    EXPECT_TRUE(kz.allowsAutoLogin && kz.sendsSerialNumber);
    EXPECT_FALSE(ChannelFacts("Ferno").allowsAutoLogin);
    for (const char* odd : {"", "kz", "KZ ", "KZZ", "K", "steam", "guest", "FERNO"}) {
        EXPECT_EQ(ChannelFacts(odd).kind, VESKChannelKind::kUnknown) << odd;
    }
}

using ObserverHolder = UnitTest;
using BaseHolder = VESKInnerObserverHolder<InnerBaseRet>;

TEST_F(ObserverHolder, DeliversToTheLastHandlerOfTypeAndIdBeforeCommitReturns) {
    static std::string heard;
    const auto wrong = [](const InnerBaseRet&, const char*) { heard += "wrong "; };
    InnerBaseRet ret(5);
    ret.thirdMsg = "third";
    BaseHolder::CommitToTaskQueue(ret, 7, "lost");
    BaseHolder::Register(7, wrong);
    BaseHolder::Register(7, [](const InnerBaseRet& got, const char* seqID) {
        heard += std::to_string(got.retCode) + ":" + seqID + ":" + got.thirdMsg.c_str() + " ";
    });
    BaseHolder::Register(8, wrong);
    BaseHolder::CommitToTaskQueue(ret, 7, "s1");
    VESKInnerObserverHolder<InnerLoginRet>::CommitToTaskQueue(InnerLoginRet(5), 7, "another type");
    BaseHolder::CommitToTaskQueue(ret, 7, "");
    EXPECT_EQ(heard, "5:s1:third 5::third ");
}

TEST_F(ObserverHolder, ThreadsCommitWhileTheHandlerIsReplaced) {
    static std::atomic<int> delivered{0};
    const auto count = [](const InnerBaseRet& ret, const char* seqID) {
        delivered += ret.thirdMsg.c_str() == std::string(seqID) ? 1 : 1000;
    };
    BaseHolder::Register(7, count);
    onEightThreads([count](int thread) {
        InnerBaseRet ret(0);
        ret.thirdMsg = std::to_string(thread).c_str();
        for (int i = 0; i < 50; ++i) {
            BaseHolder::Register(thread == 0 ? 7 : 100 + thread, count);
            BaseHolder::CommitToTaskQueue(ret, 7, std::to_string(thread));
        }
    });
    EXPECT_EQ(delivered, 400);
}

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
};

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

TEST_F(InnerRecords, OutcomeOfALoginRequest) {
    const Rows<int32_t, std::string, int32_t, int32_t, const char*> rows = {
        {28, "", 4, 28, "CURLCode for more details"},
        {503, "{}", 4, 503, "CURLCode for more details"},
        {0, "", 5, 0, "resp body empty"},
        {0, "7", 5, 0, "Parse respBody error"},
        {0, R"({"ret":0)", 5, 0, "Parse respBody error"},
        {0, "null", 5, -1, "Server Error"},
        {0, R"({"ret":1001,"msg":"no","need_name_auth":true})", 5, 1001, "Server Error"},
        {0, R"({"ret":0.0})", 5, -1, "Server Error"},
        {0, R"({"ret":4294967296})", 5, -1, "Server Error"},
        {0, R"({"ret":0,"need_name_auth":"true"})", 0, 0, "Success"},
        {0, R"({"ret":0,"need_name_auth":true})", 20, 0, "Need real name auth"},
    };
    for (const auto& [result, body, retCode, thirdCode, message] : rows) {
        InnerLoginRet ret;
        ConvertLoginRet(ret, result, body, "");
        EXPECT_EQ(ret.retCode, retCode) << body;
        EXPECT_EQ(ret.thirdCode, thirdCode) << body;
        EXPECT_STREQ(ret.retMsg.c_str(), message) << body;
        EXPECT_STREQ(ret.thirdMsg.c_str(), thirdCode == 1001 ? "no" : "") << body;
    }
}

TEST_F(InnerRecords, ResetForgetsTheAccountButNotTheOutcome) {
    InnerLoginRet ret;
    ret.FromJson(record);
    ret.FromJson(R"({"methodNameID":112,"retCode":5,"extraJson":"E","need_name_auth":true,)"
                 R"("channelID":21,"channel":"Steam"})");
    ret.reserved1 = "r1";
    ret.reserved2 = 22;
    ret.reserved3 = "r3";
    ret.reserved4 = "r4";
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
