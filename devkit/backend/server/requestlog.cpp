#include "server/requestlog.h"

#include <algorithm>
#include <map>

#include "server/digest.h"
#include "server/jsontext.h"

namespace vesk::backend {

namespace {

void writeHeaders(JsonWriter& writer, const ReceivedRequest& request) {
    // A JSON object has one member a name; a header may come several times.
    std::map<std::string, std::string> joined;
    for (const auto& [name, value] : request.headers) {
        const auto [entry, isNew] = joined.emplace(name, value);
        if (!isNew) {
            entry->second += ", " + value;
        }
    }
    writer.Key("headers");
    writer.StartObject();
    for (const auto& [name, value] : joined) {
        writeMember(writer, name, value);
    }
    writer.EndObject();
}

void writeEntry(JsonWriter& writer, const LoggedRequest& entry) {
    const ReceivedRequest& request = entry.request;
    writer.StartObject();
    writeMember(writer, "method", request.method);
    writeMember(writer, "path", request.path());
    writeMember(writer, "query", request.query());
    writeMember(writer, "target", request.target);
    writeHeaders(writer, request);
    writeMember(writer, "body", request.body);
    writeMember(writer, "body_hex", toHex(request.body));
    writeMember(writer, "verdict", entry.verdict);
    writeMember(writer, "answered", entry.scripted ? "scripted" : "default");
    writer.Key("status");
    writer.Int(entry.status);
    writer.EndObject();
}

} // namespace

void RequestLog::add(const LoggedRequest& entry) {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mEntries.push_back(entry);
        mEntries.back().number = ++mLastNumber;
        ++mLastChange;
    }
    mChanges.note();
}

std::string RequestLog::toJson() const {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    const std::lock_guard<std::mutex> lock(mMutex);
    writer.StartArray();
    for (const LoggedRequest& entry : mEntries) {
        writeEntry(writer, entry);
    }
    writer.EndArray();
    return std::string(buffer.GetString(), buffer.GetSize());
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
    mChanges.note();
}

} // namespace vesk::backend
