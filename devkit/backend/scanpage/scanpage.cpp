#include "scanpage/scanpage.h"

#include <atomic>
#include <memory>

namespace vesk::backend {

namespace {

// Each one holds a thread of the server, which has 32.
constexpr int kMaxViewers = 8;
constexpr size_t kShownRequests = 50;
constexpr size_t kShownBytes = 2000;
// A session gets lost without a change being noted.
constexpr auto kRound = std::chrono::seconds(1);

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

/// What one browser is shown, and what it has been told.
struct Viewer {
    const ScanSessions& sessions;
    const RequestLog& log;
    WaitingRoom& waitingRoom;
    uint64_t seen = 0;
    std::string toldSessions;
    std::string toldRequests;

    /// @return false when the browser or the program has gone.
    bool serve(httplib::DataSink& sink) {
        // A page that has been closed would not be noticed without a sign now and then.
        return waitingRoom.waitForChange(seen, kRound) && sink.write(":\n\n", 3) &&
               sendNews(sink, "sessions", toldSessions, sessions.toJson()) &&
               sendNews(sink, "requests", toldRequests, log.toJson(kShownRequests, kShownBytes));
    }

    /// Sends the state when it is news.
    static bool sendNews(httplib::DataSink& sink, const std::string& event, std::string& told,
                         const std::string& json) {
        if (json == told) {
            return true;
        }
        told = json;
        const std::string text = "event: " + event + "\ndata: " + json + "\n\n";
        return sink.write(text.data(), text.size());
    }
};

} // namespace

void installScanPage(httplib::Server& server, const ScanSessions& sessions, const RequestLog& log,
                     WaitingRoom& waitingRoom) {
    offer(server, "/", kScanPageHtml, "text/html; charset=utf-8");
    offer(server, "/scanpage\\.css", kScanPageCss, "text/css; charset=utf-8");
    offer(server, "/scanpage\\.js", kScanPageJs, "text/javascript; charset=utf-8");
    offer(server, "/icon\\.svg", kScanPageIcon, "image/svg+xml");
    const auto viewers = std::make_shared<std::atomic<int>>(0);
    server.Get("/events", [&sessions, &log, &waitingRoom, viewers](const httplib::Request&,
                                                                   httplib::Response& response) {
        if (++*viewers > kMaxViewers) {
            --*viewers;
            throw Refusal(503, "the scan page is open too often");
        }
        response.set_header("Cache-Control", "no-store");
        const auto viewer = std::make_shared<Viewer>(Viewer{sessions, log, waitingRoom, 0, {}, {}});
        response.set_chunked_content_provider(
            "text/event-stream",
            [viewer](size_t, httplib::DataSink& sink) { return viewer->serve(sink); },
            [viewers](bool) { --*viewers; });
    });
}

} // namespace vesk::backend
