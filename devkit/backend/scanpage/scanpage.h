#ifndef VESK_DEVKIT_BACKEND_SCANPAGE_SCANPAGE_H
#define VESK_DEVKIT_BACKEND_SCANPAGE_SCANPAGE_H

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
/// so that a page that has lost the connection needs no history. All references must outlive the
/// server.
void installScanPage(httplib::Server& server, const ScanSessions& sessions, const RequestLog& log,
                     WaitingRoom& waitingRoom);

} // namespace vesk::backend

#endif
