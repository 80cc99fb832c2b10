#include <thread>

#include "platformimpl/login/veskkz/veskkzwrapper.h"
#include "support/scriptedkz.h"
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
        {2,
         {{{L"QRCodeState", 4}}, {{L"QRCodeImageUrl", "u"}, {L"QRCodeID", "7"}}},
         "qr KZ u",
         "OpenSDK_QrScanResult_Expired"},
        {2, {{}, {{L"QRCodeImageUrl", "u"}}}, "", "Qrcode info, image url:u, id:, state:0"},
        {3, {{{L"ResultCode", 0}, {L"QRCodeState", 1}}, {}}, "", "OpenSDK_QrScanResult_UnScan"},
        {3, {{{L"ResultCode", 0}, {L"QRCodeState", 6}}, {}}, "", "OpenSDK_Notify_LoginByQRCode"},
        {3, user, "login 0 KZ login succeess o c", "KZ login succeed! openid:o ctk:c"},
        {3, failed, "login 3 gone  ", "OpenSDK QrScanResult had logined"},
        {3, {}, "login 3   ", "OpenSDK QrScanResult ResultCode:-1 ResultMessage:"},
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
    EXPECT_EQ(logged("KZOpenSDK init failed!"), 5U);
    for (bool ScriptedKZ::Script::*step :
         {&ScriptedKZ::Script::creates, &ScriptedKZ::Script::makesSink,
          &ScriptedKZ::Script::initializes}) {
        script.*step = false;
        EXPECT_FALSE(wrapper.InitializeOpenSDK("", ""));
        EXPECT_EQ(script.alive, 0);
        script.*step = true;
    }
    script.duringAdvise = [this] { std::thread([this] { script.send(0, nullptr); }).join(); };
    EXPECT_TRUE(wrapper.InitializeOpenSDK("", ""));
    EXPECT_EQ(notify.heard.size(), 1U) << "an event before the start has ended";
    EXPECT_FALSE(wrapper.InitializeOpenSDK("", ""));
    EXPECT_EQ(wrapper.GetGenerateSerialNumber(), "SN-1");
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

} // namespace

} // namespace vesk::test
