#include "scanpage/consolefeed.h"

#include <memory>

#include "checks/problem.h"
#include "server/jsonanswer.h"
#include "server/jsontext.h"

namespace vesk::backend {

namespace {

// Each page holds a thread of the server, which has 32.
constexpr int kMaxPages = 8;
constexpr size_t kShownRequests = 50;
constexpr size_t kShownBytes = 2000;
// A session gets lost without a change being noted.
constexpr auto kRound = std::chrono::seconds(1);
constexpr int kQuietRoundsBeforeSign = 5;

/// "ok", "bad", or empty when the checks had ended before. They go in the order of the codes.
const char* findingOf(int ret, Ret first, Ret last) {
    if (ret == 0 || ret > static_cast<int>(last)) {
        return ret >= static_cast<int>(Ret::UnknownPath) ? "" : "ok";
    }
    return ret >= static_cast<int>(first) ? "bad" : "";
}

void writeRequest(JsonWriter& writer, const LoggedRequest& entry) {
    const ReceivedRequest& request = entry.request;
    writer.StartObject();
    writer.Key("number");
    writer.Uint64(entry.number);
    writer.Key("received_ms");
    writer.Int64(
        std::chrono::duration_cast<std::chrono::milliseconds>(entry.received.time_since_epoch())
            .count());
    writeMember(writer, "method", request.method);
    writeMember(writer, "path", request.path().substr(0, kShownBytes));
    writeMember(writer, "query", request.query().substr(0, kShownBytes));
    writeMember(writer, "body", request.body.substr(0, kShownBytes));
    writeMember(writer, "verdict", entry.verdict.substr(0, kShownBytes));
    writeMember(writer, "time", findingOf(entry.ret, Ret::TimestampShape, Ret::TimestampStale));
    writeMember(writer, "signature",
                findingOf(entry.ret, Ret::SignatureShape, Ret::SignatureWrong));
    writeMember(writer, "content", findingOf(entry.ret, Ret::BodyNotJson, Ret::LogoutChannel));
    writer.Key("scripted");
    writer.Bool(entry.scripted);
    writer.Key("status");
    writer.Int(entry.status);
    writer.EndObject();
}

bool send(httplib::DataSink& sink, const char* event, const std::string& json) {
    const std::string text = std::string("event: ") + event + "\ndata: " + json + "\n\n";
    return sink.write(text.data(), text.size());
}

} // namespace

ConsoleFeed::ConsoleFeed(const ScanSessions& sessions, const RequestLog& log, Changes& changes)
    : mSessions(sessions), mLog(log), mChanges(changes) {}

void ConsoleFeed::install(httplib::Server& server) {
    server.Get("/events",
               [this](const httplib::Request&, httplib::Response& response) { open(response); });
}

void ConsoleFeed::open(httplib::Response& response) {
    if (++mPages > kMaxPages) {
        --mPages;
        answerError(response, 503, "the console is open too often");
        return;
    }
    response.set_header("Cache-Control", "no-store");
    const auto page = std::make_shared<Page>();
    response.set_chunked_content_provider(
        "text/event-stream",
        [this, page](size_t, httplib::DataSink& sink) { return serve(*page, sink); },
        [this](bool) { --mPages; });
}

bool ConsoleFeed::serve(Page& page, httplib::DataSink& sink) {
    if (!mChanges.waitBeyond(page.seen, kRound)) {
        return false;
    }
    ++page.quietRounds;
    std::string sessions = mSessions.toJson();
    if (sessions != page.sessions) {
        page.sessions = std::move(sessions);
        page.quietRounds = 0;
        if (!send(sink, "sessions", page.sessions)) {
            return false;
        }
    }
    const uint64_t lastRequest = mLog.lastChange();
    if (!page.hasRequests || lastRequest != page.lastRequest) {
        page.hasRequests = true;
        page.lastRequest = lastRequest;
        page.quietRounds = 0;
        return send(sink, "requests", requests());
    }
    if (page.quietRounds >= kQuietRoundsBeforeSign) {
        // Otherwise a page that has been closed would not be noticed.
        page.quietRounds = 0;
        return sink.write(":\n\n", 3);
    }
    return true;
}

std::string ConsoleFeed::requests() const {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    writer.StartArray();
    for (const LoggedRequest& entry : mLog.latest(kShownRequests)) {
        writeRequest(writer, entry);
    }
    writer.EndArray();
    return std::string(buffer.GetString(), buffer.GetSize());
}

} // namespace vesk::backend
