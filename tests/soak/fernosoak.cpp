#include "soak/soak.h"
#include "support/gamefolder.h"

using namespace Braxel::VESK;
using std::chrono::seconds;

namespace vesk::soak {

namespace {

// A look for old tokens comes every 240 seconds and takes those that have a minute or less.
constexpr seconds kLook(240);
constexpr int kLifetime = 290;

class FernoSoak : public Soak {
public:
    FernoSoak() { game.configure("FERNO_APP_ID=f-7"); }

    void run(seconds length) override;

private:
    /// A visit of two refreshes, or of as many as there is time for.
    void stay(std::chrono::steady_clock::time_point end);
    void waitForToken(const std::string& token, std::chrono::steady_clock::time_point end);
    bool visit();

    const test::Messenger mComponent{game, "ferno", "frlogin.dll"};
    long mTokens = 0;
};

void FernoSoak::run(seconds length) {
    const auto end = std::chrono::steady_clock::now() + length;
    do {
        stay(end);
    } while (std::chrono::steady_clock::now() + kLook < end);
    while (std::chrono::steady_clock::now() < end) {
        if (visit()) {
            logout();
        }
        backend.clear();
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
}

bool FernoSoak::visit() {
    mComponent.script("ctt_timeout=" + std::to_string(kLifetime) + "\nctt=token-0\n");
    const VESKLoginRet ret = login("Ferno");
    ledger.expect(ret.retCode == VESKError::SUCCESS,
                  "a scanned code logs in: " + std::to_string(ret.retCode));
    ledger.expect(backend.requests("auth/pcprecode").size() == 1 &&
                      backend.requests("auth/login").size() == 1,
                  "a visit is one pre-code and one login for the backend");
    return ret.retCode == VESKError::SUCCESS;
}

void FernoSoak::stay(std::chrono::steady_clock::time_point end) {
    const auto expiry =
        std::chrono::duration_cast<seconds>(std::chrono::system_clock::now().time_since_epoch()) +
        seconds(kLifetime);
    backend.next({"auth/login", R"({"ret":0,"openid":"o","uid":"u","token":"t","channel_info":)"
                                R"({"access_token":"old"},"token_expire_time":)" +
                                    std::to_string(expiry.count()) + "}"});
    if (!visit()) {
        return;
    }
    std::string token;
    for (int i = 0; i < 2 && std::chrono::steady_clock::now() + kLook < end; ++i) {
        token = "token-" + std::to_string(++mTokens);
        mComponent.script("ctt_timeout=" + std::to_string(kLifetime) + "\nctt=" + token + "\n");
        waitForToken(token, std::chrono::steady_clock::now() + kLook + seconds(40));
    }
    logout(token);
    backend.clear();
}

void FernoSoak::waitForToken(const std::string& token, std::chrono::steady_clock::time_point end) {
    VESKLoginRet held;
    while (std::chrono::steady_clock::now() < end && held.token != token) {
        std::this_thread::sleep_for(seconds(1)); // each look is a line of the log
        VESKLogin::GetLoginRet(held);
    }
    ledger.add("tokens refreshed", held.token == token ? 1 : 0);
    ledger.expect(held.token == token, "the component's fresh token is held: " + token);
}

} // namespace

std::unique_ptr<Soak> makeFernoSoak() {
    return std::make_unique<FernoSoak>();
}

} // namespace vesk::soak
