#include "textreport.h"

#include <cstdio>
#include <ctime>

#include "masked.h"
#include "qrblocks.h"
#include "qrcode.h"
#include "vesk/veskerror.h"

using namespace Braxel::VESK;

namespace {

/// The code of what an earlier run of the program has left: a player's name and nothing more.
constexpr int kOfEarlierRun = -1;

void say(const char* topic, const std::string& text) {
    std::string line = std::string(topic) + ": " + text;
    for (char& c : line) {
        // What others have sent must not steer the terminal.
        c = static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? '?' : c;
    }
    std::fprintf(stderr, "%s\n", line.c_str());
}

std::string failure(const VESKBaseRet& ret) {
    std::string text = "failed with code " + std::to_string(ret.retCode) + ": " + ret.retMsg;
    if (ret.thirdCode != -1) {
        text += " (from outside: " + std::to_string(ret.thirdCode) +
                (ret.thirdMsg.empty() ? "" : ", " + ret.thirdMsg) + ")";
    }
    return text;
}

std::string expiry(int64_t seconds) {
    const std::time_t time = static_cast<std::time_t>(seconds);
    const std::tm* local = seconds == 0 ? nullptr : std::localtime(&time);
    char text[32] = {};
    if (local == nullptr || std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", local) == 0) {
        return "its end is unknown";
    }
    return std::string("good until ") + text;
}

std::string describe(const VESKLoginRet& ret) {
    return ret.channel + ", player \"" + ret.userName + "\", openid " + ret.openid + ", token " +
           masked(ret.token) + ", " + expiry(ret.tokenExpire) +
           (ret.firstLogin == 1 ? ", the first login of this account" : "") +
           (ret.realNameAuth ? ", real-name authentication is demanded" : "");
}

} // namespace

void TextReport::login(const VESKLoginRet& ret) {
    say("login",
        ret.retCode == VESKError::SUCCESS ? "logged in by " + describe(ret) : failure(ret));
}

void TextReport::qrCode(const VESKQrCodeRet& ret) {
    if (ret.retCode != VESKError::SUCCESS) {
        say("qrcode", failure(ret));
        return;
    }
    const QrModules code = mDrawCodes ? qrModules(ret.qrCodeUrl) : QrModules();
    std::fputs(qrBlocks(code, mColours).c_str(), stderr);
    say("qrcode", "scan it with " + ret.channel + "; its address: " + ret.qrCodeUrl);
    if (mDrawCodes && code.empty()) {
        say("qrcode", "not drawn: the address is too long, or this program was built without "
                      "libqrencode. Open the address in a browser, or let any QR code generator "
                      "draw it.");
    }
}

void TextReport::logout(const VESKBaseRet& ret) {
    if (ret.retCode == kOfEarlierRun) {
        say("logout", "the login of an earlier run is forgotten");
    } else {
        say("logout", ret.retCode == VESKError::SUCCESS ? "logged out" : failure(ret));
    }
}

void TextReport::status(bool held, const VESKLoginRet& ret) {
    if (ret.retCode == kOfEarlierRun) {
        say("status", "no login is held; a player of an earlier run is remembered");
    } else if (held && ret.retCode == VESKError::SUCCESS) {
        say("status", "held is the login by " + describe(ret));
    } else {
        say("status", (held ? "the login is held, but " : "no login is held, ") + failure(ret));
    }
}

void TextReport::refreshed(bool held, const VESKLoginRet& ret) {
    say("watch", held
                     ? "there is a new token, " + masked(ret.token) + ", " + expiry(ret.tokenExpire)
                     : "the login is not held any more: no new token was to be had, log in again");
}

void TextReport::timeout(const std::string& word) {
    say(word.c_str(), "no result within --timeout. If nothing came at all, `vesk-console doctor` "
                      "may know why; the SDK's log is veskrecord.log beside the library.");
}
