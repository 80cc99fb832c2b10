// A game that logs in and out for VESK_SOAK_SECONDS at least, as the player VESK_SOAK_PLAYER
// ("steam" or "ferno"); scripts/soak runs both.
#include "soak/soak.h"

#include <cstdio>

using namespace Braxel::VESK;

namespace vesk::soak {

void Ledger::expect(bool holds, const std::string& what) {
    ++(holds ? mHeld : mFailed);
    if (!holds && mFindings.size() < 10) {
        mFindings.push_back(what);
    }
}

bool Ledger::close(const char* title) const {
    // The library prints, too, and no line ends.
    std::printf("\nsoak: %s\n", title);
    for (const auto& [account, count] : mAccounts) {
        std::printf("soak:   %-36s %10ld\n", account.c_str(), count);
    }
    for (const std::string& finding : mFindings) {
        std::printf("soak:   not so: %s\n", finding.c_str());
    }
    std::printf("soak: %ld passed, %ld failed\n", mHeld, mFailed);
    return mFailed == 0 && mHeld > 0;
}

VESKLoginRet Soak::login(const char* channel) {
    const size_t before = observer.loginCount();
    std::thread([channel] { VESKLogin::Login(channel, "", "", ""); }).join();
    ledger.add("logins asked for");
    VESKLoginRet ret = observer.nextLogin().ret;
    ledger.expect(observer.loginCount() == before + 1, "a login has one result");
    return ret;
}

void Soak::logout(const std::string& token) {
    const size_t before = observer.baseCount();
    VESKLogin::Logout("", "", false);
    ledger.add("logouts asked for");
    ledger.expect(observer.nextBase().ret.retCode == VESKError::SUCCESS, "a logout succeeds");
    const test::Request request = backend.waitForRequest("auth/logout");
    ledger.expect(token.empty() ? request.verdict == "ok"
                                : request.body.find('"' + token + '"') != std::string::npos,
                  "the backend is told of a logout: " + request.verdict + ", " + request.body);
    VESKLoginRet held;
    ledger.expect(!VESKLogin::GetLoginRet(held), "nothing is held after a logout");
    ledger.expect(observer.baseCount() == before + 1, "a logout has one result");
}

} // namespace vesk::soak

int main() {
    try {
        const bool isSteam = vesk::test::environment("VESK_SOAK_PLAYER") == "steam";
        const auto soak = isSteam ? vesk::soak::makeSteamSoak() : vesk::soak::makeFernoSoak();
        const auto close = [&] {
            return soak->ledger.close(isSteam ? "Steam: many players, one in ten in trouble"
                                              : "Ferno: one player, fresh tokens");
        };
        try {
            soak->run(
                std::chrono::seconds(std::stoi(vesk::test::environment("VESK_SOAK_SECONDS"))));
        } catch (const std::exception& error) {
            std::printf("soak: ended early: %s\n", error.what());
            close();
            return 1;
        }
        if (close()) {
            std::printf("soak: held\n");
            return 0;
        }
    } catch (const std::exception& error) {
        std::printf("soak: %s\n", error.what());
    }
    return 1;
}
