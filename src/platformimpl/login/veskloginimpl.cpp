#include "platformimpl/login/veskloginimpl.h"

#include "common/veskinnerrecords.h"
#include "foundation/json/veskjsonwriter.h"
#include "foundation/log/vesklogger.h"
#include "platformimpl/login/vesksteam/veskloginsteam.h"
#include "platformimpl/login/vesksteam/vesksteamwrapper.h"

namespace Braxel {
namespace VESK {

void VESKLoginIMPL::LoginChannel(const ExtendedLoginRequest& request) {
    VESK_LOG_DEBUG("VESKLoginIMPL::LoginChannel", "[ %s ], channel:%s preCode:%s",
                   request.seqID.c_str(), request.channel.c_str(), request.preCode.c_str());
    const VESKCallGate::Pass pass(mGate);
    if (pass && request.channel == "Steam") {
        VESKLoginSteam::GetInstance()->Login(request.seqID);
    }
}

void VESKLoginIMPL::PluginAutoLogin(const AutoLoginRequest& request) {
    VESK_LOG_DEBUG("VESKLoginIMPL::PluginAutoLogin", "[ %s ], channel:%s", request.seqID.c_str(),
                   request.channel.c_str());
}

void VESKLoginIMPL::Logout(const LogoutRequest& request) {
    VESKJsonBuffer params;
    VESKJsonWriter writer(params);
    writer.objectBegin();
    writer.convert("channelOnly", request.channelOnly);
    writer.objectEnd();
    VESK_LOG_DEBUG("VESKLoginIMPL::Logout", "[ %s ], channel:%s params: %s", request.seqID.c_str(),
                   request.channel.c_str(), params.text().c_str());
    const VESKCallGate::Pass pass(mGate);
    if (pass && request.channel == "Steam") {
        VESKLoginSteam::GetInstance()->Logout(request.seqID);
    }
}

void VESKLoginIMPL::RefreshToken(const std::string& channel) {
    VESK_LOG_DEBUG("VESKLoginIMPL::RefreshToken", "Start to reresh token channel:%s",
                   channel.c_str());
}

void VESKLoginIMPL::RefreshToken(const InnerLoginRet& ret) {
    VESK_LOG_DEBUG("VESKLoginIMPL::RefreshToken", "Start to reresh token channel:%s",
                   ret.channel.c_str());
}

std::string VESKLoginIMPL::GetGenerateSerialNumber(const std::string& /*channel*/) {
    return {};
}

void VESKLoginIMPL::UnInstallPlugins() {
    mGate.Close();
    VESKLoginSteam::GetInstance();
    VESKSteamWrapper::GetInstance()->UnInitSteamApi();
}

} // namespace VESK
} // namespace Braxel
