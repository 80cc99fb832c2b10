#include <cstdio>

#include "common/jsonline.h"
#include "report.h"

using vesk::devkit::JsonLine;

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

} // namespace

std::unique_ptr<Report> makeJsonReport() {
    return std::make_unique<JsonReport>();
}
