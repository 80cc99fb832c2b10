#include <cctype>
#include <cstdio>
#include <ctime>

#include "common/resultcodes.h"
#include "common/text.h"
#include "console.h"
#include "qrblocks.h"

using namespace vesk::devkit;

namespace {

class JsonReport final : public Report {
public:
    void login(const vesk::LoginRet& ret) override { print(addLogin(event("login"), ret)); }
    void qrCode(const vesk::QrCodeRet& ret) override {
        print(addBase(event("qrcode"), ret)
                  .add("channel", ret.channel)
                  .add("qrCodeUrl", ret.qrCodeUrl));
    }
    void logout(const vesk::BaseRet& ret) override { print(addBase(event("logout"), ret)); }
    void status(bool held, const vesk::LoginRet& ret) override {
        print(addLogin(event("status").add("held", held), ret));
    }
    void refreshed(bool held, const vesk::LoginRet& ret) override {
        print(event("refreshed")
                  .add("held", held)
                  .add("token", masked(ret.token))
                  .add("tokenExpire", ret.tokenExpire));
    }
    void timeout(const std::string& word) override { print(event("timeout").add("word", word)); }

private:
    static JsonLine event(const char* name) { return JsonLine().add("event", name); }

    static JsonLine addBase(JsonLine line, const vesk::BaseRet& ret) {
        return line.add("methodNameID", ret.methodNameID)
            .add("retCode", ret.retCode)
            .add("retMsg", ret.retMsg)
            .add("thirdCode", ret.thirdCode)
            .add("thirdMsg", ret.thirdMsg);
    }

    static JsonLine addLogin(JsonLine line, const vesk::LoginRet& ret) {
        return addBase(std::move(line), ret)
            .add("channel", ret.channel)
            .add("channelID", ret.channelID)
            .add("openid", ret.openid)
            .add("token", masked(ret.token))
            .add("tokenExpire", ret.tokenExpire)
            .add("firstLogin", ret.firstLogin)
            .add("userName", ret.userName)
            .add("realNameAuth", ret.realNameAuth);
    }

    static void print(const JsonLine& line) { std::fprintf(stderr, "%s\n", line.text().c_str()); }
};

/// The code of what an earlier run of the program has left: a player's name and nothing more.
constexpr int kOfEarlierRun = -1;

void say(const char* topic, const std::string& text) {
    // What others have sent must not steer the terminal.
    std::fprintf(stderr, "%s: %s\n", topic, printable(text).c_str());
}

std::string sentence(std::string text) {
    if (!text.empty()) {
        text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
        text = ". " + text;
    }
    return text;
}

/// The rest of what there is to say about a failure, after its code: what the code means, who
/// outside has failed and how, and what to do.
std::string explanation(const vesk::BaseRet& ret) {
    std::string outside = outsideMeaning(ret.retCode, ret.thirdCode);
    if (!ret.thirdMsg.empty()) {
        outside += (outside.empty() ? "its text is \"" : ", and says \"") + ret.thirdMsg + '"';
    }
    return Advice::OfResult(ret.retCode).meaning + sentence(outside) +
           sentence(std::string("what to do: ") + Advice::Of(ret.retCode, ret.thirdCode).remedy) +
           ".";
}

std::string failure(const vesk::BaseRet& ret) {
    return "failed with code " + std::to_string(ret.retCode) +
           (ret.retMsg.empty() ? "" : " (" + ret.retMsg + ")") + ": " + explanation(ret);
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

std::string describe(const vesk::LoginRet& ret) {
    return ret.channel + ", player \"" + ret.userName + "\", openid " + ret.openid + ", token " +
           masked(ret.token) + ", " + expiry(ret.tokenExpire) +
           (ret.firstLogin == 1 ? ", the first login of this account" : "") +
           (ret.realNameAuth ? ", real-name authentication is demanded" : "");
}

class TextReport final : public Report {
public:
    TextReport(bool drawCodes, bool colours) : mDrawCodes(drawCodes), mColours(colours) {}

    void login(const vesk::LoginRet& ret) override {
        say("login", ret.retCode == VESK_SUCCESS ? "logged in by " + describe(ret) : failure(ret));
    }

    void qrCode(const vesk::QrCodeRet& ret) override {
        if (ret.retCode != VESK_SUCCESS) {
            say("qrcode", failure(ret));
            return;
        }
        std::string problem;
        if (mDrawCodes) {
            const std::string picture = fetchPicture(ret.qrCodeUrl, problem);
            const std::string code = qrBlocks(picture, mColours);
            std::fputs(code.c_str(), stderr);
            if (problem.empty() && code.empty()) {
                problem = "there is no picture of an upright QR code";
            }
        }
        say("qrcode", "scan it with " + ret.channel + "; its address: " + ret.qrCodeUrl);
        if (!problem.empty()) {
            say("qrcode", "not drawn: " + problem + ". Try the address in a browser.");
        }
    }

    void logout(const vesk::BaseRet& ret) override {
        if (ret.retCode == kOfEarlierRun) {
            say("logout", "the login of an earlier run is forgotten");
        } else {
            say("logout", ret.retCode == VESK_SUCCESS ? "logged out" : failure(ret));
        }
    }

    void status(bool held, const vesk::LoginRet& ret) override {
        if (ret.retCode == kOfEarlierRun) {
            say("status", "no login is held; a player of an earlier run is remembered");
        } else if (held && ret.retCode == VESK_SUCCESS) {
            say("status", "held is the login by " + describe(ret));
        } else {
            say("status", explanation(ret) + " (Code " + std::to_string(ret.retCode) + ".)");
        }
    }

    void refreshed(bool held, const vesk::LoginRet& ret) override {
        say("watch",
            held ? "there is a new token, " + masked(ret.token) + ", " + expiry(ret.tokenExpire)
                 : "the login is not held any more: the SDK got no new token. Log in again.");
    }

    void timeout(const std::string& word) override {
        say(word.c_str(),
            "no result within --timeout. If nothing came at all, `vesk-console doctor` "
            "may know why; the SDK's log is veskrecord.log beside the library.");
    }

private:
    bool mDrawCodes;
    bool mColours;
};

} // namespace

std::unique_ptr<Report> makeJsonReport() {
    return std::make_unique<JsonReport>();
}

std::unique_ptr<Report> makeTextReport(bool drawCodes, bool colours) {
    return std::make_unique<TextReport>(drawCodes, colours);
}
