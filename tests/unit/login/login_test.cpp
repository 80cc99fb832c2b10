#include <chrono>
#include <thread>

#include "common/veskdefine.h"
#include "login/veskloginbodies.h"
#include "login/veskloginmanager.h"
#include "unit/unittest.h"
#include "vesk/veskerror.h"
#include "vesk/veskstring.h"

namespace vesk::test {

class LoginManager : public UnitTest {
protected:
    LoginManager() { write("VESKRetMsg.json", R"({"0":"good","1001":"nothing stored"})"); }

    static InnerLoginRet login(const std::string& id, const char* channel = "KZ") {
        InnerLoginRet ret(VESKError::SUCCESS);
        ret.openid = ("O" + id).c_str();
        ret.token = ("T" + id).c_str();
        ret.uid = ("u" + id).c_str();
        ret.channel = channel;
        return ret;
    }

    void save(const InnerLoginRet& ret) { EXPECT_TRUE(manager.SaveLoginRet(ret)); }

    InnerLoginRet held(bool expectFound = true) {
        InnerLoginRet ret;
        EXPECT_EQ(manager.GetLoginRet(ret), expectFound);
        return ret;
    }

    /// What a channel answers to the request for a fresh token.
    static void refresh(const char* channel, const std::string& channelInfo) {
        InnerLoginPluginRet answer;
        answer.methodNameID = kMethodNameRefreshToken;
        answer.channel = channel;
        answer.channelInfo = channelInfo;
        VESKInnerObserverHolder<InnerLoginPluginRet>::CommitToTaskQueue(answer, 111, "");
    }

    VESKLoginManager& manager = *VESKLoginManager::GetInstance();
};

TEST_F(LoginManager, HeldLoginIsJudgedByItsExpiryAndItsCode) {
    const Rows<int64_t, int32_t, bool, int32_t> rows = {
        {0, 1002, true, 1002},
        {int64_t{1} << 33, 0, true, 0},
        {now() + 3600, 1002, false, 1002},
        {now() - 1, 0, true, 1002},
    };
    for (const auto& [expire, code, found, codeAfter] : rows) {
        InnerLoginRet ret = login("1");
        ret.tokenExpire = expire;
        ret.retCode = code;
        save(ret);
        ret = held(found);
        EXPECT_EQ(ret.retCode, codeAfter) << expire;
        EXPECT_STREQ(ret.retMsg.c_str(), code != codeAfter ? "token expire" : "good");
        EXPECT_EQ(ret.methodNameID, 114);
    }
}

TEST_F(LoginManager, OnlyALoginWithIdentityAndTokenIsHeld) {
    for (String InnerLoginRet::*field : {&InnerLoginRet::openid, &InnerLoginRet::token}) {
        InnerLoginRet ret = login("1");
        ret.*field = "";
        save(ret);
        EXPECT_STREQ(held(false).uid.c_str(), "u1"); // from the file
    }
}

TEST_F(LoginManager, UpdateMergesTheAnswerIntoTheHeldLogin) {
    InnerLoginRet stored = login("1");
    stored.seq = "s0";
    stored.userName = "old";
    stored.retMsg = "other";
    save(stored);
    InnerLoginRet out(VESKError::SUCCESS);
    manager.UpdateLoginRet(R"({"ret":0,"user_name":"new","token":"T2","x":1})", out);
    EXPECT_EQ(held().ToJson(), out.ToJson());
    EXPECT_EQ(out.ToJson(),
              R"({"methodNameID":114,"retCode":0,"retMsg":"good","ret":0,"msg":"","extraJson":"",)"
              R"("openid":"O1","token":"T2","token_expire_time":0,"first":0,"reg_channel_dis":"",)"
              R"("user_name":"new","gender":0,"birthdate":"","picture_url":"","pf":"","pf_key":"",)"
              R"("need_name_auth":false,"channelID":0,"channel":"KZ","channel_info":"",)"
              R"("uid":"u1","seq":""})");
}

TEST_F(LoginManager, LogoutThatNoChannelAnswersIsNotRemembered) {
    for (const char* held : {"", "Unknown"}) {
        if (*held != '\0') {
            save(login("1", held));
        }
        ShortRequest request;
        request.seqID = std::string("s") + held;
        manager.Logout(request, true);
        // Late, what would have been remembered until now.
        InnerBaseRet answer(VESKError::SUCCESS);
        VESKInnerObserverHolder<InnerBaseRet>::CommitToTaskQueue(answer, 108, request.seqID);
        EXPECT_EQ(logged("[ " + request.seqID + " ], param JSON , channelOnly false"), 1u);
    }
}

TEST_F(LoginManager, FailedLogoutOfAChannelIsToldWithItsOutsideCode) {
    static std::string heard;
    using Holder = VESKInnerObserverHolder<InnerBaseRet>;
    Holder::Register(102, [](const InnerBaseRet& ret, const char* seqID) {
        heard = std::to_string(ret.retCode) + " " + std::to_string(ret.thirdCode) + " " +
                ret.thirdMsg.c_str() + " " + seqID;
    });
    save(login("1"));
    InnerBaseRet answer(9999);
    answer.thirdCode = 7;
    answer.thirdMsg = "why";
    Holder::CommitToTaskQueue(answer, 108, "s");
    EXPECT_EQ(heard, "9999 7 why s");
    EXPECT_STREQ(held().token.c_str(), "T1") << "the player is still logged in";
}

TEST_F(LoginManager, RefreshOfOtherChannelsOrWithoutDataChangesNothing) {
    save(login("1"));
    const std::string before = held().ToJson();
    refresh("KZ", "");
    refresh("Steam", R"({"ctk":"new","ctt":"new"})");
    refresh("Ferno", R"({"ctt":"new"})");
    EXPECT_EQ(held().ToJson(), before);
    // An answer without the token is taken at its word: the login is no longer held.
    refresh("KZ", R"({"ctk":7})");
    EXPECT_STREQ(held(false).uid.c_str(), "u1");
}

// The refreshed record takes its time to be made, with a token of that size, and meanwhile the next
// login comes, each time a little later.
TEST_F(LoginManager, RefreshNeverOverwritesTheNextLogin) {
    const std::string token(200000, 'x');
    constexpr int tries = 60;
    int lost = 0;
    for (int i = 0; i < tries; ++i) {
        const InnerLoginRet next = login("2", i % 2 == 0 ? "KZ" : "Steam");
        save(login("1"));
        onEightThreads([&](int thread) {
            if (thread == 0) {
                refresh("KZ", R"({"ctk":")" + token + R"("})");
            } else if (thread == 1) {
                std::this_thread::sleep_for(std::chrono::microseconds(i % 20 * 300));
                manager.SaveLoginRet(next);
            }
        });
        const InnerLoginRet ret = held();
        const bool isFresh = ret.token.length() == token.size() && i % 2 == 0;
        const bool isNext = std::string(ret.uid.c_str()) == "u2" &&
                            std::string(ret.channel.c_str()) == next.channel.c_str();
        lost += isNext && (isFresh || std::string(ret.token.c_str()) == "T2") ? 0 : 1;
    }
    EXPECT_EQ(lost, 0) << "of " << tries;
}

TEST_F(LoginManager, AutoLoginIsForBackendsOfOnesOwn) {
    const std::string test = VESKLoginBodies::kTestBaseUrl;
    for (const std::string& url :
         {std::string(), std::string(VESKLoginBodies::kProductionBaseUrl), test}) {
        EXPECT_FALSE(VESKLoginBodies::AllowsAutoLogin(url)) << url;
    }
    EXPECT_TRUE(VESKLoginBodies::AllowsAutoLogin(test + "/"));
    EXPECT_TRUE(VESKLoginBodies::AllowsAutoLogin("https://localhost:8443"));
}

using StringType = UnitTest;

TEST_F(StringType, CopiesTextUpToItsEndOrTheGivenLengthAlsoItsOwn) {
    const char unterminated[] = {'a', 'b', 'c'};
    const Rows<String, std::string> rows = {{String(), ""},
                                            {String(nullptr), ""},
                                            {String(nullptr, 5), ""},
                                            {String("text", 2), "te"},
                                            {String("te\0xt", 5), "te"},
                                            {String(unterminated, 3), "abc"}};
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(text.c_str(), expected);
        EXPECT_EQ(text.length(), expected.size());
    }
    String text("abcdef");
    const String& same = text;
    text = same;
    EXPECT_STREQ(text.c_str(), "abcdef");
    text = text.c_str() + 2;
    EXPECT_STREQ(text.c_str(), "cdef");
    text.assign(text.c_str(), 2);
    EXPECT_STREQ(text.c_str(), "cd");
}

TEST_F(StringType, AssignmentAloneIsTraced) {
    internal::CaptureStdout();
    String text("constructed");
    const String copy(text);
    text = "four";
    text = copy;
    text.assign("abcdef", 3);
    text = static_cast<const char*>(nullptr);
    EXPECT_EQ(internal::GetCapturedStdout(), "len:4len:11len:3len:0");
    EXPECT_STREQ(copy.c_str(), "constructed");
}

} // namespace vesk::test
