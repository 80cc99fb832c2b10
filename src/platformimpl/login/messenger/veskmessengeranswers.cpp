#include "platformimpl/login/messenger/veskmessengeranswers.h"

#include "common/veskdefine.h"
#include "foundation/json/veskjsonwriter.h"
#include "module/veskmutex.h"
#include "vesk/veskerror.h"

namespace Braxel {
namespace VESK {

bool VESKMessengerAnswers::SetSeqID(const std::string& seqID, uint64_t order) {
    {
        const std::lock_guard<VESKMutex> lock(mMutex);
        if (order >= mOrder) {
            mOrder = order;
            mSeqID = seqID;
            return true;
        }
    }
    VESK_LOG_DEBUG("VESKMessengerAnswers::SetSeqID", "[ %s ], a newer login has begun",
                   seqID.c_str());
    return false;
}

std::string VESKMessengerAnswers::SeqID() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return mSeqID;
}

void VESKMessengerAnswers::CommitQrCode(const QrNotifyRecord& record) {
    InnerQrCodeRet ret(VESKError::SUCCESS);
    ret.methodNameID = kMethodNameQrCode;
    ret.channelID = mChannel.id;
    ret.channel = mChannel.name;
    ret.qrCodeUrl = record.qrCodeUrl.c_str();
    VESKInnerObserverHolder<InnerQrCodeRet>::CommitToTaskQueue(ret, kObserverIDQrCodeRet, SeqID());
}

void VESKMessengerAnswers::CommitAnswer(const LoginNotifyRecord& record, int32_t methodNameID,
                                        int32_t observerID) {
    VESKJsonBuffer info;
    VESKJsonWriter writer(info);
    writer.objectBegin();
    writer.convert("openid", record.openid);
    writer.convert(mChannel.tokenKey, record.token);
    writer.objectEnd();
    InnerLoginPluginRet ret;
    ret.methodNameID = methodNameID;
    ret.channelID = mChannel.id;
    ret.channel = mChannel.name;
    ret.channelInfo = info.text();
    ret.uid = record.openid;
    VESKInnerObserverHolder<InnerLoginPluginRet>::CommitToTaskQueue(ret, observerID, SeqID());
}

void VESKMessengerAnswers::CommitLogin(const LoginNotifyRecord& record) {
    if (record.status == kNotifySuccess) {
        CommitAnswer(record, kMethodNameLogin, kObserverIDPluginLogin);
    } else {
        CommitLoginFailure(SeqID());
    }
}

void VESKMessengerAnswers::CommitLoginRecord(const LoginNotifyRecord& record) {
    CommitAnswer(record, kMethodNameRefreshToken, kObserverIDPluginRefresh);
}

void VESKMessengerAnswers::CommitLoginFailure(const std::string& seqID) {
    InnerLoginRet ret(VESKError::CHANNEL_LOGIN_FAILED);
    ret.methodNameID = kMethodNameLogin;
    VESKInnerObserverHolder<InnerLoginRet>::CommitToTaskQueue(ret, kObserverIDLoginRet, seqID);
}

void VESKMessengerAnswers::CommitLogout(const std::string& seqID) {
    InnerBaseRet ret(VESKError::SUCCESS);
    ret.methodNameID = kMethodNameLogout;
    VESKInnerObserverHolder<InnerBaseRet>::CommitToTaskQueue(ret, kObserverIDPluginLogout, seqID);
}

} // namespace VESK
} // namespace Braxel
