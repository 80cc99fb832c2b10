#include "login/veskloginresults.h"

#include "common/veskdefine.h"
#include "foundation/json/veskjsonreader.h"
#include "vesk/veskerror.h"

namespace Braxel {
namespace VESK {

namespace {

void ReadAnswer(const VESKJsonReader& reader, InnerLoginRet& ret) {
    reader.read("ret", ret.thirdCode);
    reader.read("msg", ret.thirdMsg);
    reader.read("openid", ret.openid);
    reader.read("uid", ret.uid);
    reader.read("token", ret.token);
    reader.read("token_expire_time", ret.tokenExpire);
    reader.read("first", ret.firstLogin);
    reader.read("reg_channel_dis", ret.regChannelDis);
    reader.read("user_name", ret.userName);
    reader.read("gender", ret.gender);
    reader.read("birthdate", ret.birthdate);
    reader.read("picture_url", ret.pictureUrl);
    reader.read("pf", ret.pf);
    reader.read("pf_key", ret.pfKey);
    reader.read("need_name_auth", ret.realNameAuth);
    reader.read("channel_info", ret.channelInfo);
    reader.read("seq", ret.seq);
}

void Fail(InnerLoginRet& ret, int32_t retCode, int32_t thirdCode, const char* retMsg) {
    ret.retCode = retCode;
    ret.thirdCode = thirdCode;
    ret.retMsg = retMsg;
}

} // namespace

void ConvertLoginRet(InnerLoginRet& ret, int32_t code, const std::string& respBody,
                     const std::string& seqID) {
    VESK_LOG_OF("veskdefine.cpp", kLogDebug, "ConvertLoginRet",
                "[ %s ] convertLoginRet loginRet:%s, respBody:%s", seqID.c_str(),
                ret.ToJson().c_str(), respBody.c_str());
    if (code != 0) {
        Fail(ret, VESKError::NETWORK_ERROR, code, "CURLCode for more details");
        return;
    }
    if (respBody.empty()) {
        Fail(ret, VESKError::SERVER_ERROR, 0, "resp body empty");
        return;
    }
    VESKJsonReader reader;
    reader.init(respBody);
    if (reader.parseFailed()) {
        Fail(ret, VESKError::SERVER_ERROR, 0, "Parse respBody error");
        return;
    }
    // An answer that is no object, or has no "ret", leaves thirdCode at -1 and so is a failure.
    if (reader.hasCursor()) {
        ReadAnswer(reader, ret);
    }
    if (ret.thirdCode != 0) {
        ret.retCode = VESKError::SERVER_ERROR;
        ret.retMsg = "Server Error";
    } else if (!ret.realNameAuth) {
        ret.retCode = VESKError::SUCCESS;
        ret.retMsg = "Success";
    } else {
        ret.retCode = VESKError::NEED_REALNAME;
        ret.retMsg = "Need real name auth";
    }
}

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
