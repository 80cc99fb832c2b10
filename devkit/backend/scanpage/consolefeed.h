#ifndef VESK_DEVKIT_BACKEND_SCANPAGE_CONSOLEFEED_H
#define VESK_DEVKIT_BACKEND_SCANPAGE_CONSOLEFEED_H

#include <atomic>
#include <string>

#include "httplib.h"
#include "scanpage/scansessions.h"
#include "server/changes.h"
#include "server/requestlog.h"

namespace vesk::backend {

/// GET /events, server-sent events. "sessions" and "requests" each bring the whole state, at the
/// start and after a change, so that a page that has lost the connection needs no history.
class ConsoleFeed {
public:
    /// All references must outlive the server.
    ConsoleFeed(const ScanSessions& sessions, const RequestLog& log, Changes& changes);

    /// Sets the routes of the server.
    void install(httplib::Server& server);

private:
    /// What one page has been told.
    struct Page {
        uint64_t seen = 0;
        std::string sessions;
        uint64_t lastRequest = 0;
        bool hasRequests = false;
        int quietRounds = 0;
    };

    void open(httplib::Response& response);
    /// @return false when the page or the program has gone.
    bool serve(Page& page, httplib::DataSink& sink);
    std::string requests() const;

    const ScanSessions& mSessions;
    const RequestLog& mLog;
    Changes& mChanges;
    std::atomic<int> mPages{0};
};

} // namespace vesk::backend

#endif
