#include <chrono>
#include <thread>

#include "common/veskdefine.h"
#include "foundation/task/manager/vesktaskmanager.h"
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

TEST_F(LoginManager, DeviceFileIsAChannelOfTwoLettersAndAUser) {
    const Rows<const char*, const char*, const char*, int32_t, int32_t> rows = {
        {"KZ12345", "KZ", "12345", 7, 0}, {"KZ1 ", "KZ", "1 ", 7, 0},
        {"Steam7", "St", "eam7", 7, 0},   {"KZ1", "old", "old", 7, 0},
        {"K", "old", "old", 7, 0},        {"", "", "", 1001, 114},
        {nullptr, "", "", 1001, 114}};
    for (const auto& [content, channel, uid, retCode, methodNameID] : rows) {
        if (content != nullptr) {
            write("upra_login.txt", content);
        } else {
            std::filesystem::remove(folder / "upra_login.txt");
        }
        InnerLoginRet ret(7);
        ret.channel = "old";
        ret.uid = "old";
        EXPECT_FALSE(manager.GetLoginRet(ret)) << channel;
        EXPECT_STREQ(ret.channel.c_str(), channel);
        EXPECT_STREQ(ret.uid.c_str(), uid);
        EXPECT_EQ(ret.retCode, retCode) << channel;
        EXPECT_EQ(ret.methodNameID, methodNameID) << channel;
        EXPECT_STREQ(ret.retMsg.c_str(), retCode == 1001 ? "nothing stored" : "");
    }
    EXPECT_EQ(logged("]empty login cache"), 2u);
}

TEST_F(LoginManager, HeldLoginIsJudgedByItsExpiryAndItsCode) {
    const Rows<int64_t, int32_t, bool, int32_t, std::string> rows = {
        {0, 0, true, 0, "tokenExpire == 0"},
        {0, 1002, true, 1002, "tokenExpire == 0"},
        {now() + 3600, 0, true, 0, "Get login ret done"},
        {int64_t{1} << 33, 0, true, 0, "Get login ret done"},
        {now() + 3600, 1002, false, 1002, "retCode != VESKError::SUCCESS"},
        {now() - 1, 0, true, 1002, "token expire"},
        {-1, 5, true, 1002, "token expire"},
    };
    for (const auto& [expire, code, found, codeAfter, message] : rows) {
        InnerLoginRet ret = login("1");
        ret.tokenExpire = expire;
        ret.retCode = code;
        save(ret);
        newMessages();
        ret = held(found);
        EXPECT_THAT(newMessages(), ElementsAre("Start get login ret",
                                               "get memory cache current login ret ", message));
        EXPECT_EQ(ret.retCode, codeAfter) << expire;
        EXPECT_STREQ(ret.retMsg.c_str(), message == "token expire" ? "token expire" : "good");
        EXPECT_EQ(ret.methodNameID, 114);
        EXPECT_STREQ(ret.token.c_str(), "T1");
    }
}

TEST_F(LoginManager, OnlyALoginWithIdentityAndTokenThatCouldBeWrittenIsHeld) {
    for (String InnerLoginRet::*field : {&InnerLoginRet::openid, &InnerLoginRet::token}) {
        InnerLoginRet ret = login("1");
        ret.*field = "";
        save(ret);
        EXPECT_STREQ(held(false).uid.c_str(), "u1"); // from the file
    }
    save(login("old"));
    EXPECT_EQ(read("upra_login.txt"), "KZuold");
    std::filesystem::remove(folder / "upra_login.txt");
    std::filesystem::create_directory(folder / "upra_login.txt");
    EXPECT_FALSE(manager.SaveLoginRet(login("new")));
    EXPECT_STREQ(held().token.c_str(), "Told");
    EXPECT_EQ(logged("]save LoginRet fail"), 1u);
    std::filesystem::remove(folder / "upra_login.txt");
    save(login("new"));
    newMessages();
    EXPECT_TRUE(manager.DeleteLoginRet());
    EXPECT_THAT(newMessages(), ElementsAre("reset login result", "login ret is empty:1"));
    EXPECT_FALSE(std::filesystem::exists(folder / "upra_login.txt"));
    EXPECT_FALSE(manager.DeleteLoginRet());
    EXPECT_EQ(held(false).retCode, VESKError::NO_STORED_LOGIN);
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
    EXPECT_EQ(logged("]targetJson before merge : {"), 1u);
    EXPECT_EQ(logged("]targetJson after merge : {"), 1u);
}

TEST_F(LoginManager, UpdateRefusesWhatDoesNotFit) {
    const Rows<const char*, int32_t, const char*> rows = {
        {"nope", 0, "invalid logindata :nope"},
        {"{}", 5, "[ s ], invalid loginRet"},
        {"{}", 0, "[ s ], getLoginRet failed, ignore this operate"}};
    for (const auto& [data, code, message] : rows) {
        InnerLoginRet out(code);
        out.seq = "s";
        const std::string before = out.ToJson();
        manager.UpdateLoginRet(data, out);
        EXPECT_EQ(newMessages().back(), message);
        EXPECT_EQ(out.ToJson(), before);
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "upra_login.txt"));
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

TEST_F(LoginManager, GuestsHaveNoTokenToRefresh) {
    manager.TimerRefreshToken("s", "Guest");
    EXPECT_THAT(newMessages(), Contains("[ s ] channel Guest  not need to refresh token"));
    EXPECT_EQ(logged("task"), 0u);
    manager.TimerRefreshToken("s", "guest");
    EXPECT_THAT(newMessages(),
                IsSupersetOf({"[ s ] channel guest has been set to refresh token",
                              "add task success :refreshTokenTask", "task manager start"}));
    VESKTaskManager::GetInstance()->StopTimer();
}

TEST_F(LoginManager, FreshChannelTokenReplacesTheStoredOne) {
    const std::string rest =
        R"("refresh_token":"","scope":"","funcs":"","other_funcs":"","extend":""})";
    const Rows<const char*, const char*, int64_t, std::string> rows = {
        {"KZ", R"({"ctt":"no","ctk":"new"})", 3600,
         R"({"openid":"O1","ctk":"new","expired":3600,"pay_token":"","access_token":"new",)" +
             rest},
        {"Ferno", R"({"ctt":"new","ctk":"no"})", 300,
         R"({"openid":"O1","ctt":"new","expired":300,"access_token":"new",)" + rest},
    };
    for (const auto& [channel, answer, lifetime, channelInfo] : rows) {
        save(login("1", channel));
        refresh(channel, answer);
        const InnerLoginRet ret = held();
        EXPECT_STREQ(ret.token.c_str(), "new");
        EXPECT_EQ(ret.channelInfo.c_str(), channelInfo);
        EXPECT_LE(std::abs(ret.tokenExpire - now() - lifetime), 5);
    }
    EXPECT_EQ(read("upra_login.txt"), "Fernou1");
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
    const int tries = triesOr(60);
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

TEST_F(LoginManager, EightThreadsReadSaveAndDelete) {
    onEightThreads([&](int thread) {
        for (int i = 0; i < 20; ++i) {
            if (thread == 0) {
                manager.DeleteLoginRet();
            } else if (thread == 1) {
                refresh("KZ", R"({"ctk":"fresh"})");
            } else if (thread < 5) {
                manager.SaveLoginRet(login(std::to_string(thread)));
            }
            InnerLoginRet ret;
            if (manager.GetLoginRet(ret) && ret.token.c_str() != std::string("fresh")) {
                EXPECT_STREQ(ret.token.c_str() + 1, ret.openid.c_str() + 1);
            }
        }
    });
    save(login("last"));
    EXPECT_EQ(read("upra_login.txt"), "KZulast");
}

TEST_F(LoginManager, BodiesHavePreCodesOfMessengersOnlyAndAnEmptyObjectForNoJson) {
    for (const char* channel : {"Steam", "kz", "KZ ", ""}) {
        EXPECT_EQ(VESKLoginBodies::PreCode(channel, "1"), "") << channel;
    }
    EXPECT_THAT(VESKLoginBodies::Login("not JSON"), StartsWith(R"({"channel_info":{},"device)"));
}

TEST_F(LoginManager, AutoLoginIsForBackendsOfOnesOwn) {
    const std::string test = VESKLoginBodies::kTestBaseUrl;
    EXPECT_THAT(VESKLoginBodies::kProductionBaseUrl, StartsWith("https://"));
    EXPECT_THAT(test, StartsWith("http://"));
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
                                            {String("text"), "text"},
                                            {String("text", 2), "te"},
                                            {String("text", 0), ""},
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
