// A game's use of the SDK in one page: set an observer, log in, look at the login, see its token
// change, log out, end.
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

#include "jsonline.h"
#include "options.h"
#include "resultqueue.h"
#include "vesk/vesklogin.h"

using namespace Braxel::VESK;

namespace {

void printResult(const Result& result) {
    if (const auto* login = std::get_if<VESKLoginRet>(&result)) {
        JsonLine("login").addRet(*login).print();
    } else if (const auto* qrCode = std::get_if<VESKQrCodeRet>(&result)) {
        JsonLine("qrcode").addRet(*qrCode).print(); // a game shows the image at qrCodeUrl
    } else {
        JsonLine("logout").addRet(std::get<VESKBaseRet>(result)).print();
    }
}

/// Prints results as they come until one of type @p Ret is there; that one decides. A login may be
/// preceded by QR codes, and by the logout of the login that it replaces.
template <typename Ret>
bool waitForSuccess(ResultQueue& results, const Options& options, const std::string& word) {
    const auto deadline = std::chrono::steady_clock::now() + options.timeout;
    while (const auto result = results.waitFor(deadline)) {
        printResult(*result);
        if (const auto* ret = std::get_if<Ret>(&*result)) {
            return ret->retCode == VESKError::SUCCESS;
        }
    }
    JsonLine("timeout").add("word", word).print();
    return false;
}

/// Shows the login that is held. An expired one is still found, so the code decides as well.
bool showStatus() {
    VESKLoginRet ret;
    const bool held = VESKLogin::GetLoginRet(ret);
    JsonLine("status").add("held", held).addRet(ret).print();
    return held && ret.retCode == VESKError::SUCCESS;
}

/// Waits until the SDK has a new token for the login that is held. Nothing calls back for that: a
/// game asks for the login whenever it needs the token.
bool watchToken(const Options& options) {
    VESKLoginRet ret;
    bool held = VESKLogin::GetLoginRet(ret);
    const std::string token = ret.token;
    const auto deadline = std::chrono::steady_clock::now() + options.timeout;
    while (held && ret.token == token && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        held = VESKLogin::GetLoginRet(ret);
    }
    if (held && ret.token == token) {
        JsonLine("timeout").add("word", "watch").print();
        return false;
    }
    // The token of a failed refresh is empty, and then no login is held any more.
    JsonLine("refreshed")
        .add("held", held)
        .addMasked("token", ret.token)
        .add("tokenExpire", ret.tokenExpire)
        .print();
    return held;
}

bool runWord(const std::string& word, const Options& options, ResultQueue& results) {
    if (word == "status") {
        return showStatus();
    }
    if (word == "watch") {
        return watchToken(options);
    }
    if (word == "logout") {
        VESKLogin::Logout(options.channel.c_str(), "", options.channelOnly);
        const bool succeeded = waitForSuccess<VESKBaseRet>(results, options, word);
        // The backend is told in the background, and the end of the process would cut that off.
        std::this_thread::sleep_for(options.linger);
        return succeeded;
    }
    if (word == "login") {
        VESKLogin::Login(options.channel.c_str(), "", "", options.extraJson.c_str());
    } else {
        VESKLogin::AutoLogin();
    }
    return waitForSuccess<VESKLoginRet>(results, options, word);
}

} // namespace

int main(int argc, char** argv) {
    const auto options = parseOptions(argc, argv);
    if (!options) {
        std::fputs(kUsage, stderr);
        return 2;
    }

    // Never deleted: a network thread may still be inside the observer when main() returns.
    static ResultQueue* const results = new ResultQueue;
    VESKLogin::SetLoginObserver(results);

    bool allSucceeded = true;
    for (const std::string& word : options->words) {
        allSucceeded = runWord(word, *options, *results) && allSucceeded;
    }

    VESKLogin::SetLoginObserver(nullptr);
    VESKLogin::UnInstall();
    return allSucceeded ? 0 : 1;
}
