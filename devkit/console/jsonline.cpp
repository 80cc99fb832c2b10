#include "jsonline.h"

#include <cstdio>

#include "masked.h"

namespace {

std::string quoted(const std::string& text) {
    std::string json = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            json += '\\';
            json += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
            json += escape;
        } else {
            json += c;
        }
    }
    return json + '"';
}

} // namespace

JsonLine::JsonLine(const std::string& event) {
    add("event", event);
}

JsonLine& JsonLine::add(const char* name, const std::string& value) {
    return addRaw(name, quoted(value));
}

JsonLine& JsonLine::add(const char* name, int64_t value) {
    return addRaw(name, std::to_string(value));
}

JsonLine& JsonLine::add(const char* name, bool value) {
    return addRaw(name, value ? "true" : "false");
}

JsonLine& JsonLine::addMasked(const char* name, const std::string& secret) {
    return add(name, masked(secret));
}

JsonLine& JsonLine::addRet(const Braxel::VESK::VESKBaseRet& ret) {
    return add("methodNameID", int64_t{ret.methodNameID})
        .add("retCode", int64_t{ret.retCode})
        .add("retMsg", ret.retMsg)
        .add("thirdCode", int64_t{ret.thirdCode})
        .add("thirdMsg", ret.thirdMsg);
}

JsonLine& JsonLine::addRet(const Braxel::VESK::VESKLoginRet& ret) {
    const Braxel::VESK::VESKBaseRet& base = ret;
    return addRet(base)
        .add("channel", ret.channel)
        .add("channelID", int64_t{ret.channelID})
        .add("openid", ret.openid)
        .addMasked("token", ret.token)
        .add("tokenExpire", ret.tokenExpire)
        .add("firstLogin", int64_t{ret.firstLogin})
        .add("userName", ret.userName)
        .add("realNameAuth", ret.realNameAuth);
}

JsonLine& JsonLine::addRet(const Braxel::VESK::VESKQrCodeRet& ret) {
    const Braxel::VESK::VESKBaseRet& base = ret;
    return addRet(base).add("channel", ret.channel).add("qrCodeUrl", ret.qrCodeUrl);
}

void JsonLine::print() const {
    std::fprintf(stderr, "{%s}\n", mMembers.c_str());
}

JsonLine& JsonLine::addRaw(const char* name, const std::string& json) {
    if (!mMembers.empty()) {
        mMembers += ',';
    }
    mMembers += quoted(name) + ':' + json;
    return *this;
}
