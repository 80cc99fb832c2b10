#ifndef VESK_DEVKIT_BACKEND_SCANPAGE_SCANPAGE_H
#define VESK_DEVKIT_BACKEND_SCANPAGE_SCANPAGE_H

#include <atomic>
#include <string>
#include <string_view>

#include "answers/requestlog.h"
#include "httplib.h"
#include "scanpage/scansessions.h"
#include "server/waitingroom.h"

namespace vesk::backend {

/// What the page consists of; embed.cmake writes them.
extern const std::string_view kScanPageHtml;
extern const std::string_view kScanPageCss;
extern const std::string_view kScanPageJs;
extern const std::string_view kScanPageIcon;

/// GET / and what it refers to, out of the program itself, and GET /events, its news: server-sent
/// events. "sessions" and "requests" each bring the whole state, at the start and after a change,
/// so that a page that has lost the connection needs no history.
class ScanPage {
public:
    /// All references must outlive the server.
    ScanPage(const ScanSessions& sessions, const RequestLog& log, WaitingRoom& waitingRoom)
        : mSessions(sessions), mLog(log), mWaitingRoom(waitingRoom) {}

    /// Sets the routes of the server.
    void install(httplib::Server& server);

private:
    /// What one browser has been told.
    struct Viewer {
        uint64_t seen = 0;
        std::string sessions;
        std::string requests;
    };

    void open(httplib::Response& response);
    /// @return false when the browser or the program has gone.
    bool serve(Viewer& viewer, httplib::DataSink& sink);

    const ScanSessions& mSessions;
    const RequestLog& mLog;
    WaitingRoom& mWaitingRoom;
    std::atomic<int> mViewers{0};
};

} // namespace vesk::backend

#endif
