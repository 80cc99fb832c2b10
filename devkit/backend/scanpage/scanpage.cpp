#include "scanpage/scanpage.h"

#include <memory>

#include "checks/contract.h"
#include "server/httpserver.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

// Each one holds a thread of the server, which has 32.
constexpr int kMaxViewers = 8;
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

std::string jsonOf(const LoggedRequest& entry) {
    const ReceivedRequest& request = entry.request;
    const auto received =
        std::chrono::duration_cast<std::chrono::milliseconds>(entry.received.time_since_epoch());
    return JsonLine()
        .add("number", entry.number)
        .add("received_ms", received.count())
        .add("method", request.method)
        .add("path", request.path().substr(0, kShownBytes))
        .add("query", request.query().substr(0, kShownBytes))
        .add("body", request.body.substr(0, kShownBytes))
        .add("verdict", entry.verdict.substr(0, kShownBytes))
        .add("time", findingOf(entry.ret, Ret::TimestampShape, Ret::TimestampStale))
        .add("signature", findingOf(entry.ret, Ret::SignatureShape, Ret::SignatureWrong))
        .add("content", findingOf(entry.ret, Ret::BodyNotJson, Ret::LogoutChannel))
        .add("scripted", entry.scripted)
        .add("status", entry.status)
        .text();
}

// The browser fetches nothing from elsewhere, runs no script but the page's own, and shows it in
// nobody's frame, where a click could be stolen.
constexpr const char* kPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

void offer(httplib::Server& server, const char* path, std::string_view content, const char* type) {
    server.Get(path, [content, type](const httplib::Request&, httplib::Response& response) {
        response.set_header("Content-Security-Policy", kPolicy);
        response.set_header("X-Content-Type-Options", "nosniff");
        response.set_header("Cache-Control", "no-store");
        response.set_content(content.data(), content.size(), type);
    });
}

bool send(httplib::DataSink& sink, const char* event, const std::string& json) {
    const std::string text = std::string("event: ") + event + "\ndata: " + json + "\n\n";
    return sink.write(text.data(), text.size());
}

} // namespace

ScanPage::ScanPage(const ScanSessions& sessions, const RequestLog& log, WaitingRoom& waitingRoom)
    : mSessions(sessions), mLog(log), mWaitingRoom(waitingRoom) {}

void ScanPage::install(httplib::Server& server) {
    offer(server, "/", kScanPageHtml, "text/html; charset=utf-8");
    offer(server, "/scanpage\\.css", kScanPageCss, "text/css; charset=utf-8");
    offer(server, "/scanpage\\.js", kScanPageJs, "text/javascript; charset=utf-8");
    offer(server, "/icon\\.svg", kScanPageIcon, "image/svg+xml");
    server.Get("/events",
               [this](const httplib::Request&, httplib::Response& response) { open(response); });
}

void ScanPage::open(httplib::Response& response) {
    if (++mViewers > kMaxViewers) {
        --mViewers;
        answerError(response, 503, "the scan page is open too often");
        return;
    }
    response.set_header("Cache-Control", "no-store");
    const auto viewer = std::make_shared<Viewer>();
    response.set_chunked_content_provider(
        "text/event-stream",
        [this, viewer](size_t, httplib::DataSink& sink) { return serve(*viewer, sink); },
        [this](bool) { --mViewers; });
}

bool ScanPage::serve(Viewer& viewer, httplib::DataSink& sink) {
    if (!mWaitingRoom.waitForChange(viewer.seen, kRound)) {
        return false;
    }
    ++viewer.quietRounds;
    std::string sessions = mSessions.toJson();
    if (sessions != viewer.sessions) {
        viewer.sessions = std::move(sessions);
        viewer.quietRounds = 0;
        if (!send(sink, "sessions", viewer.sessions)) {
            return false;
        }
    }
    const uint64_t lastRequest = mLog.lastChange();
    if (!viewer.hasRequests || lastRequest != viewer.lastRequest) {
        viewer.hasRequests = true;
        viewer.lastRequest = lastRequest;
        viewer.quietRounds = 0;
        return send(sink, "requests", requests());
    }
    if (viewer.quietRounds >= kQuietRoundsBeforeSign) {
        // Otherwise a page that has been closed would not be noticed.
        viewer.quietRounds = 0;
        return sink.write(":\n\n", 3);
    }
    return true;
}

std::string ScanPage::requests() const {
    std::string json = "[";
    for (const LoggedRequest& entry : mLog.latest(kShownRequests)) {
        appendElement(json, jsonOf(entry));
    }
    return json + "]";
}

} // namespace vesk::backend
