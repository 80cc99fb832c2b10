#include "answers/requestlog.h"

#include <algorithm>
#include <map>

#include "server/digest.h"
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

std::string jsonOf(const LoggedRequest& entry) {
    const ReceivedRequest& request = entry.request;
    return JsonLine()
        .add("method", request.method)
        .add("path", request.path())
        .add("query", request.query())
        .add("target", request.target)
        .addRaw("headers", headersOf(request))
        .add("body", request.body)
        .add("body_hex", toHex(request.body))
        .add("verdict", entry.verdict)
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
        ++mLastChange;
    }
    mWaitingRoom.noteChange();
}

std::string RequestLog::toJson() const {
    std::string json = "[";
    const std::lock_guard<std::mutex> lock(mMutex);
    for (const LoggedRequest& entry : mEntries) {
        appendElement(json, jsonOf(entry));
    }
    return json + "]";
}

std::vector<LoggedRequest> RequestLog::latest(size_t count) const {
    const std::lock_guard<std::mutex> lock(mMutex);
    const size_t shown = std::min(count, mEntries.size());
    return std::vector<LoggedRequest>(mEntries.end() - static_cast<std::ptrdiff_t>(shown),
                                      mEntries.end());
}

uint64_t RequestLog::lastChange() const {
    const std::lock_guard<std::mutex> lock(mMutex);
    return mLastChange;
}

void RequestLog::clear() {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mEntries.clear();
        ++mLastChange;
    }
    mWaitingRoom.noteChange();
}

} // namespace vesk::backend
