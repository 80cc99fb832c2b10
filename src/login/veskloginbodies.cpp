#include "login/veskloginbodies.h"

#include "common/vesk.h"
#include "common/veskchannelfacts.h"
#include "foundation/json/veskjsonreader.h"
#include "foundation/json/veskjsonwriter.h"

namespace Braxel {
namespace VESK {

namespace {

void AddDevice(VESKJsonWriter& writer) {
    writer.convertJson("device_info", VESK::GetDeviceInfo());
    writer.convert("channel_dis", "Windows");
}

} // namespace

bool VESKLoginBodies::AllowsAutoLogin(const std::string& baseUrl) {
    // Deliberate: neither of the service's own addresses, although the refusal's text speaks of
    // the test environment.
    return !baseUrl.empty() && baseUrl != kProductionBaseUrl && baseUrl != kTestBaseUrl;
}

std::string VESKLoginBodies::Login(const std::string& channelInfo) {
    VESKJsonBuffer buffer;
    VESKJsonWriter writer(buffer);
    writer.objectBegin();
    writer.convertJson("channel_info", channelInfo);
    AddDevice(writer);
    writer.objectEnd();
    return buffer.text();
}

std::string VESKLoginBodies::PreCode(const std::string& channel, const std::string& serialNumber) {
    const VESKChannelFacts& facts = ChannelFacts(channel);
    if (!facts.IsMessenger()) {
        return {};
    }
    VESKJsonBuffer buffer;
    VESKJsonWriter writer(buffer);
    writer.objectBegin();
    if (facts.sendsSerialNumber) {
        VESKJsonBuffer infoBuffer;
        VESKJsonWriter info(infoBuffer);
        info.objectBegin();
        info.convert("devinfo", serialNumber);
        info.objectEnd();
        writer.convertJson("channel_info", infoBuffer.text());
    } else {
        // Deliberate: a string here, an object everywhere else.
        writer.convert("channel_info", "");
    }
    AddDevice(writer);
    writer.objectEnd();
    return buffer.text();
}

std::string VESKLoginBodies::Logout(const std::string& token, const std::string& openid) {
    VESKJsonBuffer buffer;
    VESKJsonWriter writer(buffer);
    writer.objectBegin();
    writer.convert("token", token);
    writer.convert("openid", openid);
    writer.objectEnd();
    return buffer.text();
}

std::string VESKLoginBodies::LogoutParams(bool channelOnly) {
    VESKJsonBuffer buffer;
    VESKJsonWriter writer(buffer);
    writer.objectBegin();
    writer.convert("channelOnly", channelOnly);
    writer.objectEnd();
    return buffer.text();
}

bool VESKLoginBodies::ReadChannelOnly(const std::string& params) {
    bool channelOnly = false;
    VESKJsonReader reader;
    reader.init(params);
    if (reader.hasCursor()) {
        reader.read("channelOnly", channelOnly);
    }
    return channelOnly;
}

int32_t VESKLoginBodies::ReadChannelToken(const std::string& channel,
                                          const std::string& channelInfo, std::string& token) {
    const VESKChannelFacts& facts = ChannelFacts(channel);
    if (facts.tokenLifetime == 0) {
        return 0;
    }
    VESKJsonReader reader;
    reader.init(channelInfo);
    if (reader.hasCursor()) {
        reader.read(facts.tokenKey, token);
    }
    return facts.tokenLifetime;
}

std::string VESKLoginBodies::RefreshedChannelInfo(const std::string& channel,
                                                  const std::string& openid,
                                                  const std::string& token) {
    const VESKChannelFacts& facts = ChannelFacts(channel);
    VESKJsonBuffer buffer;
    VESKJsonWriter writer(buffer);
    writer.objectBegin();
    writer.convert("openid", openid);
    writer.convert(facts.tokenKey, token);
    writer.convert("expired", facts.tokenLifetime);
    if (facts.hasPayToken) {
        writer.convert("pay_token", "");
    }
    writer.convert("access_token", token);
    for (const char* key : {"refresh_token", "scope", "funcs", "other_funcs", "extend"}) {
        writer.convert(key, "");
    }
    writer.objectEnd();
    return buffer.text();
}

} // namespace VESK
} // namespace Braxel
