// A whole token refresh, from the task to the stored record, without waiting for the timer's ticks:
// this program has the SDK's sources compiled in and runs the task itself.
#include <atomic>
#include <cstdlib>
#include <ctime>

#include "common/veskdefine.h"
#include "foundation/task/vesktask.h"
#include "login/veskloginmanager.h"
#include "module/veskmodule.h"
#include "support/gametest.h"
#include "vesk/vesk_c.h"

namespace Braxel::VESK {

// Nobody reads the record that waits for real-name authentication yet, but the next version will:
// only an explicit instantiation may name what is private.
template <std::shared_ptr<const InnerLoginRet> VESKLoginManager::*Pending>
struct PendingLogin {
    friend std::shared_ptr<const InnerLoginRet> pendingLogin(VESKLoginManager& manager) {
        return manager.*Pending;
    }
};
template struct PendingLogin<&VESKLoginManager::mPendingLoginRet>;
std::shared_ptr<const InnerLoginRet> pendingLogin(VESKLoginManager& manager);

} // namespace Braxel::VESK

namespace vesk::test {
namespace {

struct TokenKind {
    const char *channel, *simulator, *file, *fresh, *failing;
    const char* members; ///< of channelInfo, before those of every channel
    int64_t lifetime;
};
const TokenKind kFernoTokens = {"Ferno",
                                "ferno",
                                "frlogin.dll",
                                "ctt=fresh\n",
                                "on_token=10:token_fail:3:4\n",
                                R"("ctt":"fresh","expired":300)",
                                300};
const TokenKind kKZTokens = {"KZ",
                             "kz",
                             "KZOpenSDK.dll",
                             "ctk=fresh\n",
                             "on_refresh=10:record:5:6:gone\n",
                             R"("ctk":"fresh","expired":3600,"pay_token":"")",
                             3600};

class Refresh : public GameTest {
protected:
    Refresh() {
        VESKModule::UsePath((game.path() / "VESKCore.dll").make_preferred().string());
        if (std::filesystem::exists(game.path() / "kz_full")) {
            kinds.push_back(kKZTokens);
        }
    }

    /// Logs in with a token that is about to expire, and lets the task have its look.
    /// @param queued whether results wait from then on
    Messenger logInAndRun(const TokenKind& kind, const std::string& script, bool queued = false) {
        Messenger messenger(game, kind.simulator, kind.file);
        messenger.script(script);
        backend.next(
            loginAnswer("1", R"(,"channel_info":{"access_token":"old"},"token_expire_time":)" +
                                 std::to_string(std::time(nullptr) + 30)));
        EXPECT_EQ(login(kind.channel).retCode, VESKError::SUCCESS) << kind.channel;
        vesk_queue_results(queued ? 1 : 0);
        VESKLoginManager::MakeRefreshTask()->DoTask();
        return messenger;
    }

    /// The code with which a main loop hears of the refresh; then the observer's turn again.
    int32_t refreshedCode() {
        vesk_result* result = nullptr;
        waitUntil("the result", [&] { return vesk_next_result(&result) == 1; });
        EXPECT_EQ(result->kind, VESK_RESULT_REFRESHED);
        const int32_t code = result->login->ret_code;
        vesk_result_free(result);
        vesk_queue_results(0);
        return code;
    }

    std::vector<TokenKind> kinds = {kFernoTokens};
};

TEST_F(Refresh, FreshTokenReplacesTheOldOne) {
    for (const TokenKind& kind : kinds) {
        const size_t before = game.logLines("No need to refresh");
        const Messenger messenger = logInAndRun(kind, kind.fresh, true);
        const size_t logins = observer.loginCount();
        waitUntil("the fresh token", [] { return held().token == "fresh"; });
        EXPECT_EQ(held().retCode, VESKError::SUCCESS);
        EXPECT_LE(std::abs(held().tokenExpire - std::time(nullptr) - kind.lifetime), 5);
        EXPECT_EQ(held().openid, "openid-1");
        EXPECT_EQ(held().channelInfo,
                  std::string(R"({"openid":"openid-1",)") + kind.members +
                      R"(,"access_token":"fresh","refresh_token":"","scope":"",)"
                      R"("funcs":"","other_funcs":"","extend":""})");
        EXPECT_EQ(observer.loginCount(), logins) << "nobody is told";
        EXPECT_EQ(refreshedCode(), VESK_SUCCESS);
        VESKLoginManager::MakeRefreshTask()->DoTask();
        EXPECT_EQ(game.logLines("No need to refresh"), before + 1);
        EXPECT_EQ(messenger.componentLines("frlogin_req_client_tmp_token").size(),
                  kind.lifetime == kFernoTokens.lifetime ? 1u : 0u);
    }
}

TEST_F(Refresh, FailureLeavesNoToken) {
    for (const TokenKind& kind : kinds) {
        logInAndRun(kind, kind.failing, true);
        waitUntil("the login to be dropped", [] { return !isHeld(); });
        EXPECT_EQ(refreshedCode(), VESK_TOKEN_EXPIRED);
        EXPECT_EQ(readFile(game.loginCache()), std::string(kind.channel) + "uid-1")
            << "the device still knows who";
    }
    EXPECT_EQ(game.logLines("Get Ferno login record failed!"), 1u);
}

TEST_F(Refresh, AnswerAfterALogoutBringsNoLoginBack) {
    logInAndRun(kFernoTokens, "on_token=300:token\n");
    EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
    waitForLogLine("Get Ferno login record succeed");
    EXPECT_FALSE(isHeld());
    EXPECT_EQ(logout().retCode, VESKError::NO_STORED_LOGIN);
}

TEST_F(Refresh, OfTwoGoodAnswersToALoginTheFirstIsStoredAndHeard) {
    static std::atomic<int> heard{0};
    static std::string login;
    const Messenger ferno(game, "ferno", "frlogin.dll");
    ferno.script("on_qrcode=10:qr:u,10:success,10:success\n");
    backend.next(loginAnswer("1"));
    backend.next(loginAnswer("2"));
    start();
    // Whoever hears of it takes his time to say that he has: the login is still the current one.
    VESKInnerObserverHolder<InnerLoginRet>::Register(kObserverIDLoginRet,
                                                     [](const InnerLoginRet&, const char* seqID) {
                                                         login = seqID;
                                                         ++heard;
                                                     });
    VESKLogin::Login("Ferno", "", "", "");
    waitForLogLine("convertLoginRet loginRet", 2);
    waitUntil("one result", [] { return heard > 0; });
    EXPECT_EQ(logout().retCode, VESKError::SUCCESS);
    EXPECT_EQ(backend.waitForRequest("auth/logout").verdict, "ok");
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(game.logLines("save LoginRet success"), 1u);
    VESKLoginManager& manager = *VESKLoginManager::GetInstance();
    EXPECT_FALSE(manager.checkLoginNotify(login, false)) << "no failure is heard instead";
    EXPECT_TRUE(manager.checkLoginNotify(login, true));
}

TEST_F(Refresh, LoginThatNeedsARealNameWaitsForIt) {
    backend.next(loginAnswer("old", R"(,"need_name_auth":true)", 300));
    startLogin();
    backend.waitForRequest("auth/login");
    EXPECT_EQ(login().retCode, VESKError::SUCCESS);
    waitForLogLine("login observer is null or this seqID in cache");
    EXPECT_EQ(observer.loginCount(), 1u) << "only the newer of two is answered";
    EXPECT_NE(held().token, "token-old");
    EXPECT_EQ(pendingLogin(*VESKLoginManager::GetInstance()), nullptr) << "of a superseded login";
    backend.next(loginAnswer("A", R"(,"need_name_auth":true)"));
    EXPECT_EQ(login().retCode, VESKError::NEED_REALNAME);
    const auto pending = pendingLogin(*VESKLoginManager::GetInstance());
    ASSERT_NE(pending, nullptr);
    EXPECT_STREQ(pending->token.c_str(), "token-A");
}

} // namespace
} // namespace vesk::test
