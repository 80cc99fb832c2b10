#include "login/veskloginresults.h"

#include "common/veskdefine.h"
#include "vesk/veskerror.h"

namespace Braxel {
namespace VESK {

void DeliverLoginRet(const InnerLoginRet& ret, const std::string& seqID) {
    VESKInnerObserverHolder<InnerLoginRet>::CommitToTaskQueue(ret, kObserverIDLoginRet, seqID);
}

void DeliverLoginFailure(int32_t code, const std::string& message, int32_t methodNameID,
                         const std::string& seqID) {
    InnerLoginRet ret(code);
    ret.retMsg = message.c_str();
    ret.methodNameID = methodNameID;
    DeliverLoginRet(ret, seqID);
}

void DeliverNetworkError(int32_t result, int32_t methodNameID, const std::string& seqID) {
    InnerLoginRet ret(VESKError::NETWORK_ERROR);
    ret.methodNameID = methodNameID;
    ret.thirdCode = result;
    DeliverLoginRet(ret, seqID);
}

void DeliverLogoutRet(InnerBaseRet ret, int32_t observerID, const std::string& seqID) {
    ret.methodNameID = kMethodNameLogout;
    VESKInnerObserverHolder<InnerBaseRet>::CommitToTaskQueue(ret, observerID, seqID);
}

} // namespace VESK
} // namespace Braxel
