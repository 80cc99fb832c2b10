#include "foundation/tools/veskutils.h"

#include "unit/unittest.h"
#include "vesk/veskerror.h"

namespace vesk::test {

class ReturnMessages : public UnitTest {
protected:
    const std::string noFirstFile = "miss config file :VESKRetMsg_.json";
    const std::string noTable =
        "miss VESKRetMsg file in assert(Android) or VESKAppSetting.bundle(iOS)";
};

TEST_F(ReturnMessages, WithoutFilesEachCallLooksAgainAndGivesNothing) {
    for (int call = 0; call < 2; ++call) {
        EXPECT_EQ(VESKUtils::GetRetMsg(0), "");
        EXPECT_THAT(newMessages(),
                    ElementsAre(_, _, noFirstFile, _, _, noTable, "retMsgMap empty"));
    }
    write("VESKRetMsg.json", R"({"0":"late"})");
    EXPECT_EQ(VESKUtils::GetRetMsg(0), "late");
}

TEST_F(ReturnMessages, SecondFileIsReadOnceWhenTheFirstIsMissing) {
    write("VESKRetMsg.json", R"({"5":"old","-1":"unset","5":"five","7":8,"9":null,"17":["x"]})");
    const Rows<int32_t, const char*> rows = {{5, "five"}, {-1, "unset"}, {7, ""},
                                             {9, ""},     {17, ""},      {4242, ""}};
    for (const auto& [code, message] : rows) {
        EXPECT_EQ(VESKUtils::GetRetMsg(code), message) << code;
    }
    EXPECT_EQ(logged(noFirstFile), 1u);
    EXPECT_EQ(logged("retMsgMap empty"), 0u);
}

TEST_F(ReturnMessages, BrokenFirstFileIsNoReasonToReadTheSecond) {
    write("VESKRetMsg.json", R"({"0":"second","1":"second"})");
    for (const char* broken : {R"({"0":)", "[]", "{}", "7", R"({"0":7})"}) {
        write("VESKRetMsg_.json", broken);
        EXPECT_EQ(VESKUtils::GetRetMsg(0), "") << broken;
    }
    EXPECT_EQ(logged(noTable), 4u) << "a file without texts is not missing";
    EXPECT_EQ(logged(noFirstFile), 0u);
    write("VESKRetMsg_.json", R"({"0":"mended"})");
    EXPECT_EQ(VESKUtils::GetRetMsg(0), "mended");
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
