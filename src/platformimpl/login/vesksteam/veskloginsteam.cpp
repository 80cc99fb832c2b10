#include "platformimpl/login/vesksteam/veskloginsteam.h"

#include "common/veskchannelfacts.h"
#include "common/veskdefine.h"
#include "config/veskconfigmanager.h"
#include "foundation/json/veskjsonwriter.h"
#include "platformimpl/login/vesksteam/vesksteamwrapper.h"
#include "vesk/veskerror.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr const char* kInitFailed =
    "Steam SDK init failed! Check your steam_appid.txt file and Steam Client must be running";

std::string ChannelInfo(const std::string& steamID, const std::string& ticket) {
    VESKJsonBuffer buffer;
    VESKJsonWriter writer(buffer);
    writer.objectBegin();
    writer.convert("steamid", steamID);
    writer.convert("ticket", ticket);
    writer.objectEnd();
    return buffer.text();
}

} // namespace

bool VESKLoginSteam::InitSteamApi() {
    VESK_LOG_INFO("VESKLoginSteam::InitSteamApi", "Init Steam SDK");
    const std::string appID = VESKConfigManager::GetInstance()->Get<const char*>("STEAM_APP_ID");
    const bool result = VESKSteamWrapper::GetInstance()->InitSteamApi(appID);
    if (result) {
        VESK_LOG_INFO("VESKLoginSteam::InitSteamApi", "Steam SDK init success");
        mInitialised = true;
    } else {
        VESK_LOG_INFO("VESKLoginSteam::InitSteamApi", "Steam SDK init failed!");
    }
    return result;
}

void VESKLoginSteam::Login(std::string seqID) {
    VESK_LOG_INFO("VESKLoginSteam::Login", "Steam login, seqID:%s", seqID.c_str());
    if (!mInitialised && !InitSteamApi()) {
        InnerLoginRet ret(VESKError::CHANNEL_INIT_FAILED);
        ret.methodNameID = kMethodNameLogin;
        ret.retMsg = kInitFailed;
        VESKInnerObserverHolder<InnerLoginRet>::CommitToTaskQueue(ret, kObserverIDLoginRet, seqID);
        return;
    }
    const std::string steamID = VESKSteamWrapper::GetInstance()->GetSteamID();
    const std::string ticket = VESKSteamWrapper::GetInstance()->GetAuthSessionTicket();
    // Deliberate: an empty credential is handed on as well, and the backend judges it.
    VESK_LOG_INFO("VESKLoginSteam::Login", "Steam SDK login success, steamID:%s ticket:%s",
                  steamID.c_str(), ticket.c_str());
    InnerLoginPluginRet answer;
    answer.methodNameID = kMethodNameLogin;
    const VESKChannelFacts& channel = ChannelFacts("Steam");
    answer.channelID = channel.id;
    answer.channel = channel.name;
    answer.channelInfo = ChannelInfo(steamID, ticket);
    answer.uid = steamID;
    VESKInnerObserverHolder<InnerLoginPluginRet>::CommitToTaskQueue(answer, kObserverIDPluginLogin,
                                                                    seqID);
}

void VESKLoginSteam::Logout(std::string seqID) {
    VESK_LOG_INFO("VESKLoginSteam::Logout", "Start Steam logout");
    if (mInitialised) {
        VESKSteamWrapper::GetInstance()->Logout();
    }
    VESK_LOG_INFO("VESKLoginSteam::Logout", "Steam logout done");
    InnerBaseRet ret(VESKError::SUCCESS);
    ret.methodNameID = kMethodNameLogout;
    VESKInnerObserverHolder<InnerBaseRet>::CommitToTaskQueue(ret, kObserverIDPluginLogout, seqID);
}

} // namespace VESK
} // namespace Braxel
