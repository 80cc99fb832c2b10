// A game's use of the SDK in one page: set an observer, log in, look at the login, see its token
// change, log out, end.
#include <chrono>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <thread>

#include "doctor.h"
#include "options.h"
#include "report.h"
#include "resultqueue.h"
#include "terminal.h"
#include "vesk/vesk_c.h"
#include "vesk/vesklogin.h"

using namespace Braxel::VESK;

namespace {

void tell(Report& report, const Result& result) {
    if (const auto* login = std::get_if<VESKLoginRet>(&result)) {
        report.login(*login);
    } else if (const auto* qrCode = std::get_if<VESKQrCodeRet>(&result)) {
        report.qrCode(*qrCode); // a game shows the image at qrCodeUrl
    } else {
        report.logout(std::get<VESKBaseRet>(result));
    }
}

/// Prints results as they come until one of type @p Ret is there; that one decides. A login may be
/// preceded by QR codes, and by the logout of the login that it replaces.
template <typename Ret>
bool waitForSuccess(ResultQueue& results, const Options& options, Report& report,
                    const std::string& word) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(options.timeout);
    while (const auto result = results.waitFor(deadline)) {
        tell(report, *result);
        if (const auto* ret = std::get_if<Ret>(&*result)) {
            return ret->retCode == VESKError::SUCCESS;
        }
    }
    report.timeout(word);
    return false;
}

/// Shows the login that is held. An expired one is still found, so the code decides as well.
bool showStatus(Report& report) {
    VESKLoginRet ret;
    const bool held = VESKLogin::GetLoginRet(ret);
    report.status(held, ret);
    return held && ret.retCode == VESKError::SUCCESS;
}

/// Waits until the SDK has a new token for the login that is held. Nothing calls back for that: a
/// game asks for the login whenever it needs the token.
bool watchToken(const Options& options, Report& report) {
    VESKLoginRet ret;
    bool held = VESKLogin::GetLoginRet(ret);
    const std::string token = ret.token;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(options.timeout);
    while (held && ret.token == token && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        held = VESKLogin::GetLoginRet(ret);
    }
    if (held && ret.token == token) {
        report.timeout("watch");
        return false;
    }
    // The token of a failed refresh is empty, and then no login is held any more.
    report.refreshed(held, ret);
    return held;
}

bool runWord(const std::string& word, const Options& options, Report& report,
             ResultQueue& results) {
    if (word == "status") {
        return showStatus(report);
    }
    if (word == "watch") {
        return watchToken(options, report);
    }
    if (word == "logout") {
        VESKLogin::Logout(options.channel.c_str(), "", options.channelOnly);
        const bool succeeded = waitForSuccess<VESKBaseRet>(results, options, report, word);
        // The backend is told in the background, and the end of the process would cut that off.
        std::this_thread::sleep_for(std::chrono::seconds(options.linger));
        return succeeded;
    }
    if (word == "login") {
        VESKLogin::Login(options.channel.c_str(), "", "", options.extraJson.c_str());
    } else {
        VESKLogin::AutoLogin();
    }
    return waitForSuccess<VESKLoginRet>(results, options, report, word);
}

bool runWords(const Options& options, Report& report) {
    // Never deleted: a network thread may still be inside the observer when main() returns.
    static ResultQueue* const results = new ResultQueue;
    VESKLogin::SetLoginObserver(results);

    bool allSucceeded = true;
    for (const std::string& word : options.words) {
        allSucceeded = runWord(word, options, report, *results) && allSucceeded;
    }

    VESKLogin::SetLoginObserver(nullptr);
    VESKLogin::UnInstall();
    return allSucceeded;
}

std::unique_ptr<Report> makeReport(const Options& options, const Terminal& terminal) {
    if (options.json) {
        return makeJsonReport();
    }
    const bool draw = options.drawCodes.value_or(terminal.isTerminal());
    return makeTextReport(draw, terminal.hasColours());
}

} // namespace

int main(int argc, char** argv) {
    const Options options = parseOptions(argc, argv);
    if (!options.complaint.empty()) {
        std::fprintf(stderr, "vesk-console: %s. See vesk-console --help\n",
                     options.complaint.c_str());
        return 2;
    }
    if (!options.help.empty()) {
        std::fputs(options.help.c_str(), stdout);
        return 0;
    }
    if (options.version) {
        std::printf("vesk-console with VESKCore %s\n", vesk_version());
        return 0;
    }
    const Terminal terminal;
    if (options.words.front() == "doctor") {
        vesk::doctor::DoctorOptions wanted;
        wanted.json = options.json;
        wanted.offline = options.offline;
        try {
            return vesk::doctor::runDoctor(wanted, stderr);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "vesk-console: %s\n", error.what());
            return 1;
        }
    }
    return runWords(options, *makeReport(options, terminal)) ? 0 : 1;
}
