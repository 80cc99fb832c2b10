#include "answers/requestlog.h"

#include <algorithm>
#include <map>

#include "server/json.h"

namespace vesk::backend {

namespace {

std::string headersOf(const ReceivedRequest& request) {
    // A JSON object has one member a name; a header may come several times.
    std::map<std::string, std::string> joined;
    for (const auto& [name, value] : request.headers) {
        const auto [entry, isNew] = joined.emplace(name, value);
        if (!isNew) {
            entry->second += ", " + value;
        }
    }
    JsonLine json;
    for (const auto& [name, value] : joined) {
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
