#include <thread>

#include "common/veskdefine.h"
#include "platformimpl/login/veskkz/veskkzwrapper.h"
#include "platformimpl/login/veskkz/veskloginkz.h"
#include "support/scriptedkz.h"
#include "support/waituntil.h"
#include "unit/unittest.h"

namespace vesk::test {

namespace {

/// Writes down what the wrapper tells its channel.
struct RecordingNotify : VESKChannelNotify {
    std::vector<std::string> heard;
    std::function<void()> onLogin; ///< instead of writing it down

    void OnInnerQrCodeNotify(const QrNotifyRecord& record) override {
        heard.push_back("qr " + record.channel + " " + record.qrCodeUrl);
    }
    void OnInnerLoginNotify(const LoginNotifyRecord& record) override {
        if (onLogin) {
            return onLogin();
        }
        heard.push_back("login " + text(record));
    }
    void OnInnerGetLoginRecordNotify(const LoginNotifyRecord& record) override {
        heard.push_back("record " + text(record));
    }
    static std::string text(const LoginNotifyRecord& record) {
        return std::to_string(record.status) + " " + record.message + " " + record.openid + " " +
               record.token;
    }
};

struct KZWrapper : UnitTest {
    KZWrapper() {
        wrapper.UseComponent([this] { return std::make_unique<ScriptedKZ>(script); });
        wrapper.SetNotify(&notify);
    }

    ScriptedKZ::Script script;
    VESKKZWrapper wrapper{VESKComponentLife::Milliseconds(0)};
    RecordingNotify notify;
};

Bag localList(int32_t size, const std::shared_ptr<Bag>& entry) {
    Bag bag({{L"ResultCode", 0}}, {});
    bag.listSize = size;
    bag.entry = entry;
    return bag;
}

TEST_F(KZWrapper, EventsAreDecodedAndReported) {
    ASSERT_TRUE(wrapper.InitializeOpenSDK("id", "key"));
    EXPECT_THAT(script.calls, ElementsAre("Initialize id key"));
    const Bag user({{L"ResultCode", 0}, {L"QRCodeState", 3}}, {{L"openid", "o"}, {L"ctk", "c"}});
    const Bag failed({{L"ResultCode", 5}, {L"ErrorCode", 1}, {L"QRCodeState", 4}},
                     {{L"ResultMessage", "gone"}});
    const std::string unusable = "3 Openid illegal or KZOpenSDK not init!  ";
    const struct {
        int32_t type;
        Bag bag;
        std::string heard; // "" for nothing
        std::string logged;
    } rows[] = {
        {1, {}, "", "OpenSDK_Notify_SDKEvent"},
        {2,
         {{{L"QRCodeState", 4}}, {{L"QRCodeImageUrl", "u"}, {L"QRCodeID", "7"}}},
         "qr KZ u",
         "OpenSDK_QrScanResult_Expired"},
        {2, {{}, {{L"QRCodeImageUrl", "u"}}}, "", "Qrcode info, image url:u, id:, state:0"},
        {2, {{{L"QRCodeState", -1}}, {}}, "", "state:-1 result message:"},
        {3, {{{L"ResultCode", 0}, {L"QRCodeState", 1}}, {}}, "", "OpenSDK_QrScanResult_UnScan"},
        {3, {{{L"ResultCode", 0}, {L"QRCodeState", 2}}, {}}, "", "OpenSDK_QrScanResult_UnScan"},
        {3, {{{L"ResultCode", 0}, {L"QRCodeState", 6}}, {}}, "", "OpenSDK_Notify_LoginByQRCode"},
        {3, user, "login 0 KZ login succeess o c", "KZ login succeed! openid:o ctk:c"},
        {3, failed, "login 3 gone  ", "OpenSDK QrScanResult had logined"},
        {3, {}, "login 3   ", "OpenSDK QrScanResult ResultCode:-1 ResultMessage:"},
        {4, {}, "", "Unknown type:4"},
        {6, {{}, {{L"platformkey", "pk"}}}, "", "PlatformKey:pk"},
        {7, {{{L"ResultCode", 9}}, {}}, "", "OpenSDK_Notify_LoginByPlatformKey"},
        {8, failed, "", "KZOpenSDK get local login list failed!"},
        {8, localList(-1, {}), "record 3 KZOpenSDK local login list NULL  ", "RelultCode:0"},
        {8, localList(0, {}), "record 3 KZOpenSDK local login list size zero  ", "size zero!"},
        {8, localList(1, {}), "record 3 KZOpenSDK get login info failed  ", "info failed!"},
        {8, localList(1, std::make_shared<Bag>()), "record " + unusable, "KZOpenSDK get openid:"},
        {8, localList(1, std::make_shared<Bag>(user)), "", "KZOpenSDK get openid:o"},
        {9, user, "login 0 KZ login succeess o c", "OpenSDK_Notify_LoginByLocalLoginUser success"},
        {9, failed, "record " + unusable, "Error code:1 msg:gone"},
        {10, user, "record 0 Get login record succeess o c", "Refresh token succeed!"},
        {10, failed, "record 3 OpenSDK did not login, please do login first  ",
         "TempKey ResultCode:5 ResultMessage:gone"},
        {11, {{}, {{L"body", "b"}}}, "", "User Info:b"},
        {0, {{}, {{L"result", "r"}}}, "record 3 result:r  ", "OpenSDK_Notify_Unknown"},
        {0, {}, "record 3 result is NULL or length is zero  ", "OpenSDK_Notify_Unknown"},
        {99, {}, "", "Unknown type:99"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("type " + std::to_string(row.type) + " -> " + row.heard);
        notify.heard.clear();
        newMessages();
        script.send(row.type, &row.bag);
        EXPECT_EQ(notify.heard.empty() ? "" : notify.heard.at(0), row.heard);
        EXPECT_LE(notify.heard.size(), 1U);
        EXPECT_THAT(newMessages(), ::testing::Contains(HasSubstr(row.logged)));
    }
    EXPECT_THAT(script.calls, ElementsAre("Initialize id key", "LoginByLocalLoginUser o"));
}

TEST_F(KZWrapper, EventsWithoutAResultObjectAreHarmless) {
    ASSERT_TRUE(wrapper.InitializeOpenSDK("", ""));
    for (int32_t type = 0; type <= 12; ++type) {
        script.send(type, nullptr);
    }
    EXPECT_THAT(notify.heard,
                ElementsAre("login 3 pResult is nullptr  ", "login 3   ",
                            "record 3 Openid illegal or KZOpenSDK not init!  ",
                            "record 3 OpenSDK did not login, please do login first  "));
    wrapper.SetNotify(nullptr);
    script.send(0, nullptr);
    EXPECT_EQ(notify.heard.size(), 4U);
}

TEST_F(KZWrapper, RequestsDoNothingAndAnInitialisationThatFailedCanBeTriedAgain) {
    EXPECT_EQ(wrapper.GetGenerateSerialNumber(), "");
    EXPECT_FALSE(wrapper.AutoLogin("o"));
    wrapper.StartQrCodeLogin("p");
    wrapper.GetLoginRecord("t");
    wrapper.Logout();
    EXPECT_THAT(script.calls, IsEmpty());
    EXPECT_EQ(logged("KZOpenSDK init failed!"), 5U);
    EXPECT_EQ(logged("Start QrCode login"), 0U);
    script.creates = false;
    EXPECT_FALSE(wrapper.InitializeOpenSDK("", ""));
    script.creates = true;
    script.makesSink = false;
    EXPECT_FALSE(wrapper.InitializeOpenSDK("", ""));
    EXPECT_EQ(logged("Create CComObject succeed"), 0U);
    script.makesSink = true;
    script.initializes = false;
    EXPECT_FALSE(wrapper.InitializeOpenSDK("", ""));
    EXPECT_EQ(script.alive, 0);
    script.initializes = true;
    script.duringAdvise = [this] {
        EXPECT_EQ(logged("Create CComObject succeed"), 2U);
        std::thread([this] { script.send(0, nullptr); }).join();
    };
    EXPECT_TRUE(wrapper.InitializeOpenSDK("", ""));
    EXPECT_EQ(notify.heard.size(), 1U) << "an event before the start has ended";
    EXPECT_FALSE(wrapper.InitializeOpenSDK("", ""));
    EXPECT_EQ(logged("Had already inited!"), 1U);
    EXPECT_EQ(wrapper.GetGenerateSerialNumber(), "SN-1");
}

TEST_F(KZWrapper, UninitialisingInsideAnEventLetsTheEventEndFirst) {
    ASSERT_TRUE(wrapper.InitializeOpenSDK("", ""));
    auto* late = script.callback.load();
    int aliveInside = 0;
    notify.onLogin = [&] {
        wrapper.UnInitializeOpenSDK();
        aliveInside = script.alive;
    };
    script.send(0, nullptr);
    EXPECT_EQ(aliveInside, 1);
    // While an event is still on a stack, the component goes a little later.
    waitUntil("the component to go", [this] { return script.alive == 0; });
    late->OnKZOpenSDKCallback(10, nullptr);
    EXPECT_THAT(notify.heard, IsEmpty());
}

TEST_F(KZWrapper, EventsOfManyThreadsAreDecodedWhileItIsUninitialised) {
    ASSERT_TRUE(wrapper.InitializeOpenSDK("", ""));
    std::atomic<int> count{0};
    notify.onLogin = [&count] { ++count; };
    onEightThreads([this](int thread) {
        for (int i = 0; i < 20; ++i) {
            script.send(0, nullptr);
        }
        if (thread == 0) {
            wrapper.UnInitializeOpenSDK();
        }
    });
    EXPECT_GE(count, 20);
    EXPECT_LE(count, 160);
}

/// The KZ channel over a scripted component; its results are written down with their sequence id.
struct LoginKZ : UnitTest {
    LoginKZ() {
        VESKKZWrapper::GetInstance()->UseComponent(
            [this] { return std::make_unique<ScriptedKZ>(script); });
        VESKInnerObserverHolder<InnerLoginPluginRet>::Register(109, &hear<109>);
        VESKInnerObserverHolder<InnerLoginPluginRet>::Register(111, &hear<111>);
        VESKInnerObserverHolder<InnerQrCodeRet>::Register(110, &hear<110>);
        VESKInnerObserverHolder<InnerLoginRet>::Register(101, &hear<101>);
        VESKInnerObserverHolder<InnerBaseRet>::Register(108, &hear<108>);
    }

    static std::string rest(const InnerLoginPluginRet& ret) {
        return std::to_string(ret.channelID) + " " + ret.channel + " " + ret.channelInfo + " " +
               ret.uid;
    }
    static std::string rest(const InnerQrCodeRet& ret) {
        return std::to_string(ret.retCode) + " " + std::to_string(ret.channelID) + " " +
               ret.channel.c_str() + " " + ret.qrCodeUrl.c_str();
    }
    static std::string rest(const InnerLoginRet& ret) { return std::to_string(ret.retCode); }
    static std::string rest(const InnerBaseRet& ret) { return std::to_string(ret.retCode); }

    template <int observerID, typename Record>
    static void hear(const Record& ret, const char* seq) {
        results.push_back(std::to_string(observerID) + " " + seq + " " +
                          std::to_string(ret.methodNameID) + " " + rest(ret));
    }

    inline static std::vector<std::string> results;
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
    EXPECT_THAT(results,
                ElementsAre("110 s1 122 0 2 KZ u", R"(109 s1 112 2 KZ {"openid":"o","ctk":"c"} o)",
                            R"(111 s1 123 2 KZ {"openid":"o","ctk":"c"} o)",
                            R"(111 s1 123 2 KZ {"openid":"","ctk":""} )", "101 s1 112 9999",
                            "108 s2 117 0"));
}

TEST_F(LoginKZ, WithoutAComponentOnlyALogoutSucceeds) {
    channel.Logout("s0");
    EXPECT_EQ(logged("KZOpenSDK"), 0U) << "nobody was asked";
    script.creates = false;
    channel.AutoLogin("s1", "o", 1);
    EXPECT_THAT(results, ElementsAre("108 s0 117 0", "101 s1 112 9999"));
    script.creates = true;
    channel.AutoLogin("s2", "o", 2);
    const Bag list = localList(0, {});
    script.send(8, &list);
    EXPECT_EQ(results.back(), R"(111 s2 123 2 KZ {"openid":"","ctk":""} )");
}

} // namespace

} // namespace vesk::test
