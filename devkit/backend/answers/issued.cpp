#include "answers/issued.h"

#include "server/digest.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

constexpr size_t kOpenidLength = 32;
constexpr size_t kUidHexDigits = 8;
constexpr size_t kTokenBytes = 20;
constexpr size_t kPreCodeBytes = 8;

} // namespace

IssuedLogin IssuedLogins::issue(const std::string& channelId, const std::string& channelUserId) {
    const std::string identity = sha256Hex(channelId + ":" + channelUserId);
    IssuedLogin login;
    login.openid = identity.substr(0, kOpenidLength);
    login.uid =
        std::to_string(std::stoul(identity.substr(kOpenidLength, kUidHexDigits), nullptr, 16));
    login.token = randomHex(kTokenBytes);

    const std::lock_guard<std::mutex> lock(mMutex);
    login.first = mOpenids.insert(login.openid).second;
    mChannelIds[{login.openid, login.token}] = channelId;
    return login;
}

void IssuedLogins::adopt(const std::string& channelId, const std::string& openid,
                         const std::string& token) {
    const std::lock_guard<std::mutex> lock(mMutex);
    mOpenids.insert(openid);
    mChannelIds[{openid, token}] = channelId;
}

std::optional<Problem> IssuedLogins::check(const std::string& channelId, const std::string& openid,
                                           const std::string& token) const {
    const std::lock_guard<std::mutex> lock(mMutex);
    if (mOpenids.count(openid) == 0) {
        return Problem{Ret::UnknownLogin,
                       "openid " + inQuotes(openid) + " has no login with this backend"};
    }
    const auto login = mChannelIds.find({openid, token});
    if (login == mChannelIds.end()) {
        return Problem{Ret::UnknownLogin,
                       "the token was not handed out to openid " + inQuotes(openid)};
    }
    if (login->second != channelId) {
        return Problem{Ret::LogoutChannel, "channelid is " + inQuotes(channelId) +
                                               ", the login was made on channel " +
                                               inQuotes(login->second)};
    }
    return std::nullopt;
}

std::string IssuedPreCodes::issue(const std::string& seq) {
    std::string preCode = "pre-" + randomHex(kPreCodeBytes);
    const std::lock_guard<std::mutex> lock(mMutex);
    mSeqs[preCode] = seq;
    return preCode;
}

std::string IssuedPreCodes::seqOf(const std::string& preCode) const {
    const std::lock_guard<std::mutex> lock(mMutex);
    const auto found = mSeqs.find(preCode);
    return found == mSeqs.end() ? std::string() : found->second;
}

} // namespace vesk::backend
