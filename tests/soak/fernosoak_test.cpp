// One player who stays for hours and gets a fresh token every four minutes.
#include "soak/soaktest.h"

namespace vesk::test {
namespace {

// A look for old tokens comes every 240 seconds and takes those that have a minute or less.
constexpr seconds kLook(240);

class FernoSoak : public SoakTest {
protected:
    /// What the component answers from now on.
    void setToken(const std::string& token) const {
        mComponent.script("ctt_timeout=" + std::to_string(kLifetime.count()) + "\nctt=" + token);
    }

    bool visit() {
        setToken("token-0");
        const VESKLoginRet ret = loginElsewhere("Ferno");
        check(ret.retCode == VESKError::SUCCESS,
              "a scanned code logs in: " + std::to_string(ret.retCode));
        check(backend.requests("auth/pcprecode").size() == 1 &&
                  backend.requests("auth/login").size() == 1,
              "a visit is one pre-code and one login for the backend");
        return ret.retCode == VESKError::SUCCESS;
    }

    /// A visit of two refreshes, or of as many as there is time for.
    void stay() {
        const auto expiry = std::chrono::duration_cast<seconds>(
            std::chrono::system_clock::now().time_since_epoch() + kLifetime);
        backend.next(loginAnswer("A", R"(,"channel_info":{"access_token":"old"},)"
                                      R"("token_expire_time":)" +
                                          std::to_string(expiry.count())));
        if (!visit()) {
            return;
        }
        std::string token;
        for (int i = 0; i < 2 && Clock::now() + kLook < end; ++i) {
            token = "token-" + std::to_string(++mTokens);
            setToken(token);
            const auto patience = Clock::now() + kLook + seconds(40);
            while (Clock::now() < patience && held().token != token) {
                std::this_thread::sleep_for(seconds(1)); // each look is a line of the log
            }
            count("tokens refreshed", held().token == token ? 1 : 0);
            check(held().token == token, "the component's fresh token is held: " + token);
        }
        leave(token);
        backend.clear();
    }

private:
    const seconds kLifetime{290};
    const Messenger mComponent{game, "ferno", "frlogin.dll"};
    long mTokens = 0;
};

TEST_F(FernoSoak, OnePlayerWithFreshTokens) {
    do {
        stay();
    } while (Clock::now() + kLook < end);
    while (Clock::now() < end) {
        if (visit()) {
            leave();
        }
        backend.clear();
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
}

} // namespace
} // namespace vesk::test
