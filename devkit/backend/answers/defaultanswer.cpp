#include "answers/defaultanswer.h"

#include "server/digest.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

constexpr long long kTokenSeconds = 7200;
constexpr size_t kNameDigits = 6;

} // namespace

std::string plainAnswer() {
    return JsonLine().add("ret", 0).add("msg", "").text();
}

std::string problemAnswer(const Problem& problem) {
    return JsonLine().add("ret", static_cast<int>(problem.ret)).add("msg", problem.msg).text();
}

std::string preCodeAnswer(const std::string& preCode) {
    return JsonLine().add("ret", 0).add("msg", "").add("precode", preCode).text();
}

std::string loginAnswer(const IssuedLogin& login, const CheckedRequest& request, long long now) {
    return JsonLine()
        .add("ret", 0)
        .add("msg", "")
        .add("openid", login.openid)
        .add("uid", login.uid)
        .add("token", login.token)
        .add("token_expire_time", now + kTokenSeconds)
        .add("first", login.first ? 1 : 0)
        .add("reg_channel_dis", "Windows")
        .add("user_name", "Player " + login.openid.substr(0, kNameDigits))
        .add("gender", 0)
        .add("birthdate", "")
        .add("picture_url", "")
        .add("pf", "dev-windows-" + request.query.channelId)
        .add("pf_key", md5Hex(login.openid + login.token))
        .add("need_name_auth", false)
        .addRaw("channel_info", request.body.channelInfo)
        .add("seq", request.query.seq)
        .text();
}

} // namespace vesk::backend
