#include "common/veskinnerrecords.h"

#include "foundation/json/veskjsonreader.h"
#include "foundation/json/veskjsonwriter.h"
#include "foundation/log/vesklogger.h"
#include "foundation/tools/veskutils.h"

namespace Braxel {
namespace VESK {

namespace {

/// Visits the members of a login record's JSON form in their order; one list for both directions.
template <typename Record, typename Visitor>
void VisitLoginRet(Record& ret, const Visitor& visit) {
    visit("methodNameID", ret.methodNameID);
    visit("retCode", ret.retCode);
    visit("retMsg", ret.retMsg);
    visit("ret", ret.thirdCode);
    visit("msg", ret.thirdMsg);
    visit("extraJson", ret.extraJson);
    visit("openid", ret.openid);
    visit("token", ret.token);
    visit("token_expire_time", ret.tokenExpire);
    visit("first", ret.firstLogin);
    visit("reg_channel_dis", ret.regChannelDis);
    visit("user_name", ret.userName);
    visit("gender", ret.gender);
    visit("birthdate", ret.birthdate);
    visit("picture_url", ret.pictureUrl);
    visit("pf", ret.pf);
    visit("pf_key", ret.pfKey);
    visit("need_name_auth", ret.realNameAuth);
    visit("channelID", ret.channelID);
    visit("channel", ret.channel);
    visit("channel_info", ret.channelInfo);
    visit("uid", ret.uid);
    visit("seq", ret.seq);
}

void CopyBase(const InnerBaseRet& inner, VESKBaseRet& ret) {
    ret.methodNameID = inner.methodNameID;
    ret.retCode = inner.retCode;
    ret.retMsg = inner.retMsg.c_str();
    ret.thirdCode = inner.thirdCode;
    ret.thirdMsg = inner.thirdMsg.c_str();
    ret.extraJson = inner.extraJson.c_str();
}

} // namespace

InnerBaseRet::InnerBaseRet(int32_t code)
    : retCode(code), retMsg(VESKUtils::GetRetMsg(code).c_str()) {}

std::string InnerBaseRet::ToJson() const {
    VESKJsonBuffer buffer;
    VESKJsonWriter writer(buffer);
    writer.objectBegin();
    writer.convert("methodNameID", methodNameID);
    writer.convert("retCode", retCode);
    writer.convert("retMsg", retMsg);
    writer.convert("thirdCode", thirdCode);
    writer.convert("thirdMsg", thirdMsg);
    writer.convert("extraJson", extraJson);
    writer.objectEnd();
    return buffer.text();
}

void InnerLoginRet::resetLoginRet() {
    VESK_LOG_OF("veskdefine.cpp", kLogDebug, "InnerLoginRet::resetLoginRet", "reset login result");
    reserved2 = 0;
    openid = "";
    token = "";
    tokenExpire = -1;
    firstLogin = -1;
    regChannelDis = "";
    userName = "";
    gender = 0;
    birthdate = "";
    pictureUrl = "";
    pf = "";
    pfKey = "";
    realNameAuth = false;
    channelID = -1;
    channel = "";
    channelInfo = "";
    uid = "";
    reserved4 = "";
    seq = "";
    methodNameID = -1;
}

std::string InnerLoginRet::ToJson() const {
    VESKJsonBuffer buffer;
    VESKJsonWriter writer(buffer);
    writer.objectBegin();
    VisitLoginRet(*this,
                  [&writer](const char* key, const auto& field) { writer.convert(key, field); });
    writer.objectEnd();
    return buffer.text();
}

void InnerLoginRet::FromJson(const std::string& json) {
    VESKJsonReader reader;
    reader.init(json);
    if (reader.hasCursor()) {
        VisitLoginRet(*this, [&reader](const char* key, auto& field) { reader.read(key, field); });
    }
}

std::string InnerLoginPluginRet::ToJson() const {
    VESKJsonBuffer buffer;
    VESKJsonWriter writer(buffer);
    writer.objectBegin();
    writer.convert("methodNameID", methodNameID);
    writer.convert("channelID", channelID);
    writer.convert("channel", channel);
    writer.convert("channelInfo", channelInfo);
    writer.convert("uid", uid);
    writer.convert("reserved1", reserved1);
    writer.convert("reserved2", reserved2);
    writer.objectEnd();
    return buffer.text();
}

VESKBaseRet ToPublic(const InnerBaseRet& inner) {
    VESKBaseRet ret;
    CopyBase(inner, ret);
    return ret;
}

VESKLoginRet ToPublic(const InnerLoginRet& inner) {
    VESKLoginRet ret;
    CopyBase(inner, ret);
    ret.openid = inner.openid.c_str();
    ret.token = inner.token.c_str();
    ret.tokenExpire = inner.tokenExpire;
    ret.firstLogin = inner.firstLogin;
    ret.regChannelDis = inner.regChannelDis.c_str();
    ret.userName = inner.userName.c_str();
    ret.gender = inner.gender;
    ret.birthdate = inner.birthdate.c_str();
    ret.pictureUrl = inner.pictureUrl.c_str();
    ret.pf = inner.pf.c_str();
    ret.pfKey = inner.pfKey.c_str();
    ret.realNameAuth = inner.realNameAuth;
    ret.channelID = inner.channelID;
    ret.channel = inner.channel.c_str();
    ret.channelInfo = inner.channelInfo.c_str();
    ret.reserved1 = inner.reserved1.c_str();
    ret.reserved2 = inner.reserved2;
    ret.reserved3 = inner.reserved3.c_str();
    return ret;
}

VESKQrCodeRet ToPublic(const InnerQrCodeRet& inner) {
    VESKQrCodeRet ret;
    CopyBase(inner, ret);
    ret.channelID = inner.channelID;
    ret.channel = inner.channel.c_str();
    ret.qrCodeUrl = inner.qrCodeUrl.c_str();
    return ret;
}

} // namespace VESK
} // namespace Braxel
