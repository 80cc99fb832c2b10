#include <atomic>
#include <map>
#include <thread>

#include "common/veskdefine.h"
#include "platformimpl/login/veskkz/kzcomponent.h"
#include "platformimpl/login/veskkz/veskkzwrapper.h"
#include "platformimpl/login/veskkz/veskloginkz.h"
#include "unit/unittest.h"

namespace vesk::test {

namespace {

/// The property bag of an event, written down.
struct Bag : KZResult {
    std::map<std::wstring, int32_t> numbers;
    std::map<std::wstring, std::string> texts;
    int32_t listSize = -1;
    std::shared_ptr<Bag> entry; ///< what the list's first entry reads as; null cannot be read

    Bag() = default;
    Bag(std::map<std::wstring, int32_t> n, std::map<std::wstring, std::string> t)
        : numbers(std::move(n)), texts(std::move(t)) {}

    int32_t GetInt(const wchar_t* name, int32_t defValue) const override {
        const auto found = numbers.find(name);
        return found == numbers.end() ? defValue : found->second;
    }
    std::string GetText(const wchar_t* name) const override {
        const auto found = texts.find(name);
        return found == texts.end() ? std::string() : found->second;
    }
    int32_t GetListSize(const wchar_t*) const override { return listSize; }
    std::unique_ptr<KZResult> GetListEntry(const wchar_t*, int32_t) const override {
        return entry ? std::make_unique<Bag>(*entry) : nullptr;
    }
};

/// A KZ component in this process: answers as told, and sends events when it is told to.
struct ScriptedKZ : KZComponent {
    /// What the case sees of the component that the wrapper owns, and tells it.
    struct Script {
        bool creates = true;
        bool makesSink = true;
        bool initializes = true;
        std::function<void()> duringAdvise = [] {};
        std::vector<std::string> calls;
        std::atomic<KZOpenSDKCallback*> callback{nullptr};
        std::atomic<int> alive{0};

        /// Sends an event as the component would; nobody hears it once it has been shut down.
        void send(int32_t type, const KZResult* result) {
            if (auto* listener = callback.load()) {
                listener->OnKZOpenSDKCallback(type, result);
            }
        }
    };

    explicit ScriptedKZ(Script& s) : script(s) { ++script.alive; }
    ~ScriptedKZ() override { --script.alive; }

    bool Create(const std::string&) override { return script.creates; }
    bool MakeSink(KZOpenSDKCallback* callback) override {
        sink = callback;
        return script.makesSink;
    }
    int32_t Advise() override {
        script.callback = sink;
        script.duringAdvise();
        return 0;
    }
    bool Initialize(const std::string& id, const std::string& key) override {
        script.calls.push_back("Initialize " + id + " " + key);
        return script.initializes;
    }
    bool ShutDown() override { return true; }
    bool Unload() override {
        script.callback = nullptr;
        return true;
    }
    std::string GetGenerateSerialNumber() override { return "SN-1"; }
    bool LoginByQRCode(const std::string& preCode) override {
        script.calls.push_back("LoginByQRCode " + preCode);
        return true;
    }
    int32_t GetLocalLoginList() override { return 0; }
    bool LoginByLocalLoginUser(const std::string& openid) override {
        script.calls.push_back("LoginByLocalLoginUser " + openid);
        return true;
    }
    bool RefreshClientTempKey() override { return true; }
    void Logout() override {}

    Script& script;
    KZOpenSDKCallback* sink = nullptr;
};

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

// As when their pre-codes cross.
TEST_F(KZWrapper, OlderLoginNeitherShowsACodeNorTakesTheAnswers) {
    static std::string answered;
    VESKInnerObserverHolder<InnerLoginPluginRet>::Register(
        kObserverIDPluginLogin,
        [](const InnerLoginPluginRet&, const char* seqID) { answered += seqID; });
    VESKKZWrapper::GetInstance()->UseComponent(
        [this] { return std::make_unique<ScriptedKZ>(script); });
    VESKLoginKZ& channel = *VESKLoginKZ::GetInstance();
    channel.QrCodeLogin("newer", "p2", 2);
    channel.QrCodeLogin("older", "p1", 1);
    EXPECT_THAT(script.calls, ElementsAre("Initialize  ", "LoginByQRCode p2"));
    const Bag user({{L"ResultCode", 0}, {L"QRCodeState", 3}}, {{L"openid", "o"}, {L"ctk", "c"}});
    script.send(3, &user);
    EXPECT_EQ(answered, "newer");
}

} // namespace

} // namespace vesk::test
