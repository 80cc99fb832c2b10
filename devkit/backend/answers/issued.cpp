#include "answers/issued.h"

#include "server/json.h"
#include "server/system.h"

namespace vesk::backend {

namespace {

constexpr size_t kUidHexDigits = 8;
constexpr size_t kTokenBytes = 20;
constexpr size_t kPreCodeBytes = 8;

} // namespace

IssuedLogin Issued::login(const std::string& channelId, const std::string& channelUserId) {
    IssuedLogin login;
    login.openid = md5Hex(channelId + ":" + channelUserId);
    login.uid = std::to_string(std::stoul(login.openid.substr(0, kUidHexDigits), nullptr, 16));
    login.token = randomHex(kTokenBytes);

    const std::lock_guard<std::mutex> lock(mMutex);
    login.first = mOpenids.insert(login.openid).second;
    mChannelIds[{login.openid, login.token}] = channelId;
    return login;
}

void Issued::adoptLogin(const std::string& channelId, const std::string& openid,
                        const std::string& token) {
    const std::lock_guard<std::mutex> lock(mMutex);
    mOpenids.insert(openid);
    mChannelIds[{openid, token}] = channelId;
}

Problem Issued::checkLogout(const std::string& channelId, const std::string& openid,
                            const std::string& token) const {
    const std::lock_guard<std::mutex> lock(mMutex);
    if (mOpenids.count(openid) == 0) {
        return {Ret::UnknownLogin,
                "openid " + inQuotes(openid) + " has no login with this backend"};
    }
    const auto login = mChannelIds.find({openid, token});
    if (login == mChannelIds.end()) {
        return {Ret::UnknownLogin, "the token was not handed out to openid " + inQuotes(openid)};
    }
    if (login->second != channelId) {
        return {Ret::LogoutChannel, "channelid is " + inQuotes(channelId) +
                                        ", the login was made on channel " +
                                        inQuotes(login->second)};
    }
    return {};
}

std::string Issued::preCode(const std::string& seq) {
    std::string preCode = "pre-" + randomHex(kPreCodeBytes);
    const std::lock_guard<std::mutex> lock(mMutex);
    mSeqs[preCode] = seq;
    return preCode;
}

std::string Issued::seqOf(const std::string& preCode) const {
    const std::lock_guard<std::mutex> lock(mMutex);
    const auto found = mSeqs.find(preCode);
    return found == mSeqs.end() ? std::string() : found->second;
}

} // namespace vesk::backend
