#include "login/vesklogouts.h"

#include <memory>
#include <mutex>
#include <utility>

#include "common/veskchannelfacts.h"
#include "common/veskids.h"
#include "foundation/log/vesklogger.h"
#include "foundation/task/manager/vesktaskmanager.h"
#include "foundation/task/veskrefreshtokentask.h"
#include "foundation/tools/vesknetworkutils.h"
#include "login/veskheldlogin.h"
#include "login/veskloginbodies.h"
#include "login/veskloginresults.h"
#include "login/veskresultsink.h"
#include "platformimpl/login/veskloginimpl.h"
#include "vesk/veskerror.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr const char* kLogoutsLog = "veskloginmanager.cpp";

} // namespace

void VESKLogouts::Logout(const ShortRequest& request, bool channelOnly) {
    const std::string& seqID = request.seqID;
    VESK_LOG_OF(kLogoutsLog, kLogDebug, "VESKLoginManager::Logout", "[ %s ], logout",
                seqID.c_str());
    const uint64_t storedLogins = mHeld.StoredLogins();
    InnerLoginRet stored;
    if (!mHeld.Get(stored) && stored.retCode != VESKError::TOKEN_EXPIRED) {
        VESK_LOG_OF(kLogoutsLog, kLogError, "VESKLoginManager::Logout", "[ %s ], get loginRet fail",
                    seqID.c_str());
        DeliverLogoutRet(InnerBaseRet(stored.retCode), kObserverIDBaseRet, seqID);
        return;
    }
    LogoutRequest logout;
    static_cast<ShortRequest&>(logout) = request;
    logout.channelOnly = channelOnly;
    if (logout.channel.empty()) {
        logout.channel = stored.channel.c_str();
    }
    VESK_LOG_OF(kLogoutsLog, kLogDebug, "VESKLoginManager::Logout", "[ %s ] logout %s",
                seqID.c_str(), logout.channel.c_str());
    Keep(seqID, channelOnly, storedLogins);
    try {
        if (ChannelFacts(logout.channel).kind == VESKChannelKind::kGuest) {
            DeliverLogoutRet(InnerBaseRet(VESKError::SUCCESS), kObserverIDPluginLogout, seqID);
        } else if (!VESKLoginIMPL::GetInstance()->Logout(logout)) {
            Take(seqID);
            VESKResultSink::ChannelIsSilent(seqID);
        }
    } catch (...) {
        Take(seqID); // nor then
        throw;
    }
    // A channel may take its time: by now the task may be that of a login which has followed.
    if (storedLogins == mHeld.StoredLogins()) {
        VESKTaskManager::GetInstance()->RemoveTask(VESKRefreshTokenTask::kTaskName);
        VESKTaskManager::GetInstance()->StopTimer();
    }
}

/// Before the channel is asked: it may answer at once.
void VESKLogouts::Keep(const std::string& seqID, bool channelOnly, uint64_t storedLogins) {
    if (!seqID.empty()) { // its answer asks for nothing
        Pending logout{VESKLoginBodies::LogoutParams(channelOnly), storedLogins,
                       std::make_unique<VESKActivity>()};
        const std::lock_guard<VESKMutex> lock(mMutex);
        std::swap(mPending[seqID], logout);
    }
}

VESKLogouts::Pending VESKLogouts::Take(const std::string& seqID) {
    Pending logout{"", mHeld.StoredLogins(), nullptr};
    const std::lock_guard<VESKMutex> lock(mMutex);
    const auto found = mPending.find(seqID);
    if (found != mPending.end()) {
        logout = std::move(found->second);
        mPending.erase(found);
    }
    return logout;
}

void VESKLogouts::OnChannelAnswer(const InnerBaseRet& answer, const char* seqID) {
    VESK_LOG_OF(kLogoutsLog, kLogDebug, "VESKLoginManager::PluginLogoutObserver", "[ %s ], %s",
                seqID, answer.ToJson().c_str());
    if (*seqID == '\0') {
        VESK_LOG_OF(kLogoutsLog, kLogInfo, "VESKLoginManager::PluginLogoutObserver",
                    "channel logout done, no seqID no need to callback");
        return;
    }
    const Pending logout = Take(seqID);
    const bool channelOnly = VESKLoginBodies::ReadChannelOnly(logout.params);
    VESK_LOG_OF(kLogoutsLog, kLogDebug, "VESKLoginManager::PluginLogoutObserver",
                "[ %s ], param JSON %s, channelOnly %s", seqID, logout.params.c_str(),
                channelOnly ? "true" : "false");
    if (answer.retCode != VESKError::SUCCESS) {
        VESK_LOG_OF(kLogoutsLog, kLogError, "VESKLoginManager::PluginLogoutObserver",
                    "[ %s ], logout plugin failed", seqID);
    } else {
        InnerLoginRet stored;
        mHeld.Get(stored);
        if (!channelOnly) {
            SendRequest(seqID, logout.storedLogins);
            mHeld.DropLoginOf(logout.storedLogins);
            VESK_LOG_OF(kLogoutsLog, kLogDebug, "VESKLoginManager::PluginLogoutObserver",
                        "logoutNotifyObservers count: %i",
                        static_cast<int>(mNotifyObservers.size()));
            for (const NotifyObserver observer : mNotifyObservers) {
                observer(stored);
            }
        }
    }
    InnerBaseRet ret(answer.retCode);
    ret.thirdCode = answer.thirdCode;
    ret.thirdMsg = answer.thirdMsg;
    DeliverLogoutRet(ret, kObserverIDBaseRet, seqID);
}

void VESKLogouts::SendRequest(const std::string& seqID, uint64_t storedLogins) {
    VESK_LOG_OF(kLogoutsLog, kLogDebug, "VESKLoginManager::SendLogoutRequest",
                "[ %s ] sendLogoutRequest", seqID.c_str());
    InnerLoginRet stored;
    mHeld.Get(stored);
    if (stored.openid.length() == 0 || stored.token.length() == 0 ||
        storedLogins != mHeld.StoredLogins()) {
        VESK_LOG_OF(kLogoutsLog, kLogDebug, "VESKLoginManager::SendLogoutRequest",
                    "[ %s ], invalid loginret", seqID.c_str());
        return;
    }
    LogOutAtBackend(stored, seqID);
}

void VESKLogouts::LogOutAtBackend(const InnerLoginRet& login, const std::string& seqID) {
    const std::string body = VESKLoginBodies::Logout(login.token.c_str(), login.openid.c_str());
    const std::string url = VESKNetworkUtils::GetURL("auth/logout", login.channelID, body, seqID);
    Post(url, &OnResponse, body, std::make_unique<std::string>(seqID), seqID);
}

void VESKLogouts::OnResponse(int32_t /*reqSeq*/, int32_t result, const std::string& body,
                             void* context) {
    const std::unique_ptr<std::string> seqID(static_cast<std::string*>(context));
    VESK_LOG_OF(kLogoutsLog, kLogDebug, "VESKLoginManager::OnLogoutResp", "[ %s ], %s",
                seqID->c_str(), body.c_str());
    VESKLogoutRet ret;
    VESKNetworkUtils::HandleNetworkResponse(result, body, ret, *seqID);
    if (ret.retCode == VESKError::SUCCESS) {
        VESK_LOG_OF(kLogoutsLog, kLogDebug, "VESKLoginManager::OnLogoutResp",
                    "[ %s ], logout request success", seqID->c_str());
    }
}

} // namespace VESK
} // namespace Braxel
