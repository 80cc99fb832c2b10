// A game's use of the SDK in one page: log in, look at the login, see its token change, log out,
// end.
#include <chrono>
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "console.h"
#include "doctor.h"
#include "vesk/vesk.hpp"

namespace {

/// Prints results as they come until that of the latest operation is there; it decides. A login may
/// be preceded by QR codes, and by the logout of the login that it replaces.
bool waitForSuccess(vesk::MainLoop& loop, const Options& options, Report& report,
                    const std::string& word) {
    using std::chrono::steady_clock;
    const uint64_t request = loop.state().request;
    std::optional<bool> succeeded;
    const auto decide = [&](const vesk::BaseRet& ret, uint64_t answered) {
        if (answered == request) {
            succeeded = ret.retCode == VESK_SUCCESS;
        }
    };
    const vesk::Overloaded visitor{
        [&](const vesk::LoginRet& ret, uint64_t answered) {
            if (ret.retCode != VESK_LOGIN_OVERTAKEN) { // its own word has told that none came
                report.login(ret);
            }
            decide(ret, answered);
        },
        [&](const vesk::BaseRet& ret, uint64_t answered) {
            report.logout(ret);
            decide(ret, answered);
        },
        [&](const vesk::QrCodeRet& ret, uint64_t) { report.qrCode(ret); }, // a game shows the image
        [](const vesk::Refreshed&, uint64_t) {},                           // for `watch`
    };
    const auto deadline = steady_clock::now() + std::chrono::seconds(options.timeout);
    do {
        std::this_thread::sleep_for(std::chrono::milliseconds(10)); // a frame
        loop.poll(visitor);
    } while (!succeeded && steady_clock::now() < deadline);
    if (!succeeded) {
        report.timeout(word);
    }
    return succeeded.value_or(false);
}

/// Shows the login that is held. An expired one is still found, so the code decides as well.
bool showStatus(Report& report) {
    vesk::LoginRet ret;
    const bool held = vesk::getLoginRet(ret);
    report.status(held, ret);
    return held && ret.retCode == VESK_SUCCESS;
}

/// Waits until the SDK has a new token for the login that is held.
bool watchToken(const Options& options, Report& report) {
    vesk::LoginRet ret;
    bool held = vesk::getLoginRet(ret);
    const std::string token = ret.token;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(options.timeout);
    while (held && ret.token == token && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        held = vesk::getLoginRet(ret);
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
             vesk::MainLoop& loop) {
    if (word == "status") {
        return showStatus(report);
    }
    if (word == "watch") {
        return watchToken(options, report);
    }
    if (word == "login") {
        vesk::login(options.channel, "", "", options.extraJson);
    } else if (word == "autologin") {
        vesk::autoLogin();
    } else {
        vesk::logout(options.channel, "", options.channelOnly);
    }
    const bool succeeded = waitForSuccess(loop, options, report, word);
    if (word == "logout") { // the backend is told in the background
        loop.waitIdle(std::chrono::seconds(options.linger));
    }
    return succeeded;
}

bool runWords(const Options& options, Report& report) {
    bool allSucceeded = true;
    {
        vesk::MainLoop loop;
        loop.setLoginTimeout(std::chrono::milliseconds(0)); // --timeout is the user's
        for (const std::string& word : options.words) {
            allSucceeded = runWord(word, options, report, loop) && allSucceeded;
        }
    }
    vesk::uninstall();
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
