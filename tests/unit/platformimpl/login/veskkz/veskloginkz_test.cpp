#include "platformimpl/login/veskkz/veskloginkz.h"

#include "common/veskdefine.h"
#include "platformimpl/login/veskkz/veskkzwrapper.h"
#include "support/scriptedkz.h"
#include "unit/unittest.h"

namespace vesk::test {

namespace {

std::vector<std::string>& results() {
    static std::vector<std::string> list;
    return list;
}

/// The KZ channel over a scripted component; its results are written down with their sequence id.
struct LoginKZ : UnitTest {
    LoginKZ() {
        VESKKZWrapper::GetInstance()->UseComponent(
            [this] { return std::make_unique<ScriptedKZ>(script); });
        VESKInnerObserverHolder<InnerLoginPluginRet>::Register(
            109, [](const InnerLoginPluginRet& ret, const char* seq) { add("login", ret, seq); });
        VESKInnerObserverHolder<InnerLoginPluginRet>::Register(
            111, [](const InnerLoginPluginRet& ret, const char* seq) { add("record", ret, seq); });
        VESKInnerObserverHolder<InnerQrCodeRet>::Register(110, [](const InnerQrCodeRet& ret,
                                                                  const char* seq) {
            results().push_back(std::string("qr ") + seq + " " + std::to_string(ret.methodNameID) +
                                " " + std::to_string(ret.retCode) + " " +
                                std::to_string(ret.channelID) + " " + ret.channel.c_str() + " " +
                                ret.qrCodeUrl.c_str());
        });
        VESKInnerObserverHolder<InnerLoginRet>::Register(
            101, [](const InnerLoginRet& ret, const char* seq) {
                results().push_back(std::string("failed ") + seq + " " +
                                    std::to_string(ret.methodNameID) + " " +
                                    std::to_string(ret.retCode) + ret.retMsg.c_str());
            });
        VESKInnerObserverHolder<InnerBaseRet>::Register(
            108, [](const InnerBaseRet& ret, const char* seq) {
                results().push_back(std::string("logout ") + seq + " " +
                                    std::to_string(ret.methodNameID) + " " +
                                    std::to_string(ret.retCode));
            });
    }

    static void add(const char* what, const InnerLoginPluginRet& ret, const char* seq) {
        results().push_back(std::string(what) + " " + seq + " " + std::to_string(ret.methodNameID) +
                            " " + std::to_string(ret.channelID) + " " + ret.channel + " " +
                            ret.channelInfo + " " + ret.uid);
    }

    ScriptedKZ::Script script;
    VESKLoginKZ& channel = *VESKLoginKZ::GetInstance();
};

TEST_F(LoginKZ, EveryAnswerCarriesTheLastRequestsSequenceId) {
    write("VESKConfig.ini", "KZ_APP_ID=17\nKZ_APP_KEY=k\n");
    channel.QrCodeLogin("s1", "pre", 2);
    channel.QrCodeLogin("older", "pre-1", 1);
    EXPECT_THAT(script.calls, ElementsAre("Initialize 17 k", "LoginByQRCode pre"));
    const Bag qr({}, {{L"QRCodeImageUrl", "u"}, {L"QRCodeID", "7"}});
    const Bag user({{L"ResultCode", 0}, {L"QRCodeState", 3}}, {{L"openid", "o"}, {L"ctk", "c"}});
    script.send(2, &qr);
    script.send(3, &user);
    script.send(10, &user);
    script.send(10, nullptr);
    script.send(3, nullptr);
    channel.Logout("s2");
    EXPECT_THAT(results(),
                ElementsAre("qr s1 122 0 2 KZ u", R"(login s1 112 2 KZ {"openid":"o","ctk":"c"} o)",
                            R"(record s1 123 2 KZ {"openid":"o","ctk":"c"} o)",
                            R"(record s1 123 2 KZ {"openid":"","ctk":""} )", "failed s1 112 9999",
                            "logout s2 117 0"));
}

TEST_F(LoginKZ, AutomaticLoginWithoutAComponentFailsAtOnce) {
    script.creates = false;
    channel.AutoLogin("s1", "o", 1);
    EXPECT_THAT(results(), ElementsAre("failed s1 112 9999"));
    script.creates = true;
    channel.AutoLogin("s2", "o", 2);
    Bag list({{L"ResultCode", 0}}, {});
    list.listSize = 0;
    script.send(8, &list);
    EXPECT_THAT(results().back(), R"(record s2 123 2 KZ {"openid":"","ctk":""} )");
}

TEST_F(LoginKZ, ComponentThatCannotBeHeardIsAskedForNothing) {
    script.advised = static_cast<int32_t>(0x80004002);
    channel.QrCodeLogin("s1", "pre", 1);
    channel.AutoLogin("s2", "o", 2);
    const std::string text = "17KZ OpenSDK events cannot be received! Advise failed: 0x80004002";
    EXPECT_THAT(results(), ElementsAre("failed s1 112 " + text, "failed s2 112 " + text));
    EXPECT_THAT(script.calls, ElementsAre("Initialize  "));
}

TEST_F(LoginKZ, LogoutBeforeAnyLoginTouchesNoComponent) {
    channel.Logout("s1");
    EXPECT_THAT(script.calls, IsEmpty());
    EXPECT_THAT(results(), ElementsAre("logout s1 117 0"));
}

} // namespace
} // namespace vesk::test
