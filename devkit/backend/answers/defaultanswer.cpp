#include "answers/defaultanswer.h"

#include "server/digest.h"
#include "server/jsontext.h"

namespace vesk::backend {

namespace {

constexpr long long kTokenSeconds = 7200;
constexpr size_t kNameDigits = 6;

void beginAnswer(JsonWriter& writer, int ret, const std::string& msg) {
    writer.StartObject();
    writer.Key("ret");
    writer.Int(ret);
    writeMember(writer, "msg", msg);
}

std::string endAnswer(JsonWriter& writer, const rapidjson::StringBuffer& buffer) {
    writer.EndObject();
    return std::string(buffer.GetString(), buffer.GetSize());
}

} // namespace

std::string plainAnswer() {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    beginAnswer(writer, 0, "");
    return endAnswer(writer, buffer);
}

std::string problemAnswer(const Problem& problem) {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    beginAnswer(writer, static_cast<int>(problem.ret), problem.msg);
    return endAnswer(writer, buffer);
}

std::string preCodeAnswer(const std::string& preCode) {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    beginAnswer(writer, 0, "");
    writeMember(writer, "precode", preCode);
    return endAnswer(writer, buffer);
}

std::string loginAnswer(const IssuedLogin& login, const CheckedRequest& request, long long now) {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    beginAnswer(writer, 0, "");
    writeMember(writer, "openid", login.openid);
    writeMember(writer, "uid", login.uid);
    writeMember(writer, "token", login.token);
    writer.Key("token_expire_time");
    writer.Int64(now + kTokenSeconds);
    writer.Key("first");
    writer.Int(login.first ? 1 : 0);
    writeMember(writer, "reg_channel_dis", "Windows");
    writeMember(writer, "user_name", "Player " + login.openid.substr(0, kNameDigits));
    writer.Key("gender");
    writer.Int(0);
    writeMember(writer, "birthdate", "");
    writeMember(writer, "picture_url", "");
    writeMember(writer, "pf", "dev-windows-" + request.query.channelId);
    writeMember(writer, "pf_key", md5Hex(login.openid + login.token));
    writer.Key("need_name_auth");
    writer.Bool(false);
    writer.Key("channel_info");
    writer.RawValue(request.body.channelInfo.data(), request.body.channelInfo.size(),
                    rapidjson::kObjectType);
    writeMember(writer, "seq", request.query.seq);
    return endAnswer(writer, buffer);
}

} // namespace vesk::backend
