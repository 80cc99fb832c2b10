#include "platformimpl/login/veskloginimpl.h"

#include "common/veskinnerrecords.h"
#include "foundation/json/veskjsonwriter.h"
#include "foundation/log/vesklogger.h"
#include "platformimpl/login/veskferno/veskfrwrapper.h"
#include "platformimpl/login/veskferno/veskloginferno.h"
#include "platformimpl/login/veskkz/veskkzwrapper.h"
#include "platformimpl/login/veskkz/veskloginkz.h"
#include "platformimpl/login/vesksteam/veskloginsteam.h"
#include "platformimpl/login/vesksteam/vesksteamwrapper.h"

namespace Braxel {
namespace VESK {

bool VESKLoginIMPL::LoginChannel(const ExtendedLoginRequest& request) {
    VESK_LOG_DEBUG("VESKLoginIMPL::LoginChannel", "[ %s ], channel:%s preCode:%s",
                   request.seqID.c_str(), request.channel.c_str(), request.preCode.c_str());
    const VESKCallGate::Pass pass(mGate);
    if (!pass) {
        return false;
    }
    if (request.channel == "KZ") {
        return VESKLoginKZ::GetInstance()->QrCodeLogin(request.seqID, request.preCode,
                                                       request.order);
    }
    if (request.channel == "Ferno") {
        return VESKLoginFerno::GetInstance()->QrCodeLogin(request.seqID, request.preCode,
                                                          request.order);
    }
    if (request.channel == "Steam") {
        VESKLoginSteam::GetInstance()->Login(request.seqID);
    }
    return true;
}

void VESKLoginIMPL::PluginAutoLogin(const AutoLoginRequest& request) {
    VESK_LOG_DEBUG("VESKLoginIMPL::PluginAutoLogin", "[ %s ], channel:%s", request.seqID.c_str(),
                   request.channel.c_str());
    const VESKCallGate::Pass pass(mGate);
    if (pass && request.channel == "KZ") {
        VESKLoginKZ::GetInstance()->AutoLogin(request.seqID, request.uid, request.order);
    }
}

bool VESKLoginIMPL::Logout(const LogoutRequest& request) {
    VESKJsonBuffer params;
    VESKJsonWriter writer(params);
    writer.objectBegin();
    writer.convert("channelOnly", request.channelOnly);
    writer.objectEnd();
    VESK_LOG_DEBUG("VESKLoginIMPL::Logout", "[ %s ], channel:%s params: %s", request.seqID.c_str(),
                   request.channel.c_str(), params.text().c_str());
    const VESKCallGate::Pass pass(mGate);
    if (!pass) {
        return false;
    }
    if (request.channel == "KZ") {
        VESKLoginKZ::GetInstance()->Logout(request.seqID);
    } else if (request.channel == "Ferno") {
        VESKLoginFerno::GetInstance()->Logout(request.seqID);
    } else if (request.channel == "Steam") {
        VESKLoginSteam::GetInstance()->Logout(request.seqID);
    } else {
        return false;
    }
    return true;
}

void VESKLoginIMPL::RefreshToken(const std::string& channel) {
    Refresh(channel, "");
}

void VESKLoginIMPL::RefreshToken(const InnerLoginRet& ret) {
    Refresh(ret.channel.c_str(), ret.token.c_str());
}

void VESKLoginIMPL::Refresh(const std::string& channel, const std::string& oldToken) {
    VESK_LOG_DEBUG("VESKLoginIMPL::RefreshToken", "Start to reresh token channel:%s",
                   channel.c_str());
    const VESKCallGate::Pass pass(mGate);
    if (!pass) {
        return;
    }
    if (channel == "KZ") {
        VESKLoginKZ* plugin = VESKLoginKZ::GetInstance();
        if (!plugin->IsInitialised()) {
            plugin->InitializeOpenSDK();
        }
        plugin->GetLoginRecord(oldToken);
    } else if (channel == "Ferno") {
        VESKLoginFerno* plugin = VESKLoginFerno::GetInstance();
        if (!plugin->IsInitialised()) {
            plugin->InitializeOpenSDK();
        }
        plugin->GetLoginRecord();
    }
}

std::string VESKLoginIMPL::GetGenerateSerialNumber(const std::string& channel) {
    const VESKCallGate::Pass pass(mGate);
    if (!pass || channel != "KZ") {
        return {};
    }
    VESKLoginKZ* plugin = VESKLoginKZ::GetInstance();
    if (!plugin->IsInitialised()) {
        plugin->InitializeOpenSDK();
    }
    return VESKKZWrapper::GetInstance()->GetGenerateSerialNumber();
}

void VESKLoginIMPL::UnInstallPlugins() {
    mGate.Close();
    VESKLoginKZ::GetInstance();
    VESKKZWrapper::GetInstance()->UnInitializeOpenSDK();
    VESKLoginFerno::GetInstance();
    VESKFRWrapper::GetInstance()->UnInitializeOpenSDK();
    VESKLoginSteam::GetInstance();
    VESKSteamWrapper::GetInstance()->UnInitSteamApi();
}

} // namespace VESK
} // namespace Braxel
