#include "foundation/task/veskrefreshtokentask.h"

#include <string>

#include "common/veskchannelfacts.h"
#include "common/veskinnerrecords.h"
#include "foundation/log/vesklogger.h"
#include "platformimpl/foundation/os/clock.h"
#include "vesk/veskerror.h"

namespace Braxel {
namespace VESK {

VESKRefreshTokenTask::Decision VESKRefreshTokenTask::Decide(const InnerLoginRet& ret, int64_t now) {
    if (ret.retCode != VESKError::SUCCESS || ret.channelInfo.length() == 0) {
        return Decision::Invalid;
    }
    const int64_t margin = ChannelFacts(ret.channel.c_str()).refreshMargin;
    return ret.tokenExpire - now > margin ? Decision::NotYet : Decision::Refresh;
}

void VESKRefreshTokenTask::DoTask() {
    InnerLoginRet ret;
    if (!mLogin.read(ret)) {
        VESK_LOG_ERROR("VESKRefreshTokenTask::DoTask", "fail to getLoginRet");
        return;
    }
    switch (Decide(ret, os::UnixSeconds())) {
    case Decision::Invalid:
        VESK_LOG_ERROR("VESKRefreshTokenTask::DoTask", "invalid login ret");
        break;
    case Decision::NotYet:
        VESK_LOG_INFO("VESKRefreshTokenTask::DoTask", "No need to refresh");
        break;
    case Decision::Refresh:
        VESK_LOG_INFO("VESKRefreshTokenTask::DoTask", "Start to refresh token");
        mLogin.refresh(ret);
        break;
    }
}

std::string VESKRefreshTokenTask::GetTaskName() {
    return kTaskName;
}

uint32_t VESKRefreshTokenTask::GetInterval() {
    return 240;
}

} // namespace VESK
} // namespace Braxel
