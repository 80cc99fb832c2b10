#include "soak.h"

#include <thread>

using namespace Braxel::VESK;

namespace vesk::soak {

VESKLoginRet Soak::login(const char* channel) {
    const long before = observer.logins();
    std::thread([channel] { VESKLogin::Login(channel, "", "", ""); }).join();
    ledger.add("logins asked for");
    VESKLoginRet ret = observer.waitForLogin(before + 1);
    ledger.expect(observer.logins() == before + 1, "a login has one result");
    return ret;
}

void Soak::logout(const std::string& token) {
    const long before = observer.bases();
    VESKLogin::Logout("", "", false);
    ledger.add("logouts asked for");
    ledger.expect(observer.waitForBase(before + 1).retCode == VESKError::SUCCESS,
                  "a logout succeeds");
    const test::Request request = backend.waitForRequest("auth/logout");
    ledger.expect(token.empty() ? request.verdict == "ok"
                                : request.body.find('"' + token + '"') != std::string::npos,
                  "the backend is told of a logout: " + request.verdict + ", " + request.body);
    VESKLoginRet held;
    ledger.expect(!VESKLogin::GetLoginRet(held), "nothing is held after a logout");
    ledger.expect(observer.bases() == before + 1, "a logout has one result");
}

} // namespace vesk::soak
