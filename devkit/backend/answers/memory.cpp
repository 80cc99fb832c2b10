#include "answers/memory.h"

#include <algorithm>

#include "server/json.h"
#include "server/system.h"

namespace vesk::backend {

namespace {

constexpr size_t kUidHexDigits = 8;
constexpr size_t kTokenBytes = 20;
constexpr size_t kPreCodeBytes = 8;

std::string headersOf(const ReceivedRequest& request) {
    JsonLine json;
    for (const auto& [name, value] : request.headers) {
        json.add(name, value);
    }
    return json.text();
}

/// "ok", "bad", or empty when the checks had ended before. They go in the order of the codes.
const char* findingOf(Ret ret, Ret first, Ret last) {
    if (ret == Ret::Good || ret > last) {
        return ret >= Ret::UnknownPath ? "" : "ok";
    }
    return ret >= first ? "bad" : "";
}

std::string jsonOf(const LoggedRequest& entry, size_t maxBytes) {
    const ReceivedRequest& request = entry.request;
    const Ret ret = entry.problem.ret;
    const auto received =
        std::chrono::duration_cast<std::chrono::milliseconds>(entry.received.time_since_epoch());
    const std::string body = request.body.substr(0, maxBytes);
    return JsonLine()
        .add("number", entry.number)
        .add("received_ms", received.count())
        .add("method", request.method)
        .add("path", request.path().substr(0, maxBytes))
        .add("query", request.query().substr(0, maxBytes))
        .add("target", request.target.substr(0, maxBytes))
        .addRaw("headers", headersOf(request))
        .add("body", body)
        .add("body_hex", toHex(body))
        .add("verdict", entry.problem.msg.substr(0, maxBytes))
        .add("time", findingOf(ret, Ret::TimestampShape, Ret::TimestampStale))
        .add("signature", findingOf(ret, Ret::SignatureShape, Ret::SignatureWrong))
        .add("content", findingOf(ret, Ret::BodyNotJson, Ret::LogoutChannel))
        .add("answered", entry.scripted ? "scripted" : "default")
        .add("status", entry.status)
        .text();
}

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

void RequestLog::add(const LoggedRequest& entry) {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mEntries.push_back(entry);
        mEntries.back().number = ++mLastNumber;
    }
    mWaitingRoom.noteChange();
}

std::string RequestLog::toJson(size_t count, size_t maxBytes) const {
    std::string json = "[";
    const std::lock_guard<std::mutex> lock(mMutex);
    for (size_t i = mEntries.size() - std::min(count, mEntries.size()); i < mEntries.size(); ++i) {
        appendElement(json, jsonOf(mEntries[i], maxBytes));
    }
    return json + "]";
}

void RequestLog::clear() {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mEntries.clear();
    }
    mWaitingRoom.noteChange();
}

} // namespace vesk::backend
