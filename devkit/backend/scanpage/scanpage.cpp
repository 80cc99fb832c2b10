#include "scanpage/scanpage.h"

#include <memory>

#include "server/controlport.h"

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

/// Sends the state when it is news.
bool sendNews(httplib::DataSink& sink, const std::string& event, std::string& told,
              const std::string& json) {
    if (json == told) {
        return true;
    }
    told = json;
    const std::string text = "event: " + event + "\ndata: " + json + "\n\n";
    return sink.write(text.data(), text.size());
}

} // namespace

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
        throw Refusal(503, "the scan page is open too often");
    }
    response.set_header("Cache-Control", "no-store");
    const auto viewer = std::make_shared<Viewer>();
    response.set_chunked_content_provider(
        "text/event-stream",
        [this, viewer](size_t, httplib::DataSink& sink) { return serve(*viewer, sink); },
        [this](bool) { --mViewers; });
}

bool ScanPage::serve(Viewer& viewer, httplib::DataSink& sink) {
    // A page that has been closed would not be noticed without a sign now and then.
    return mWaitingRoom.waitForChange(viewer.seen, kRound) && sink.write(":\n\n", 3) &&
           sendNews(sink, "sessions", viewer.sessions, mSessions.toJson()) &&
           sendNews(sink, "requests", viewer.requests, mLog.toJson(kShownRequests, kShownBytes));
}

} // namespace vesk::backend
