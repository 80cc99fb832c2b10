#ifndef VESK_DEVKIT_BACKEND_SCANPAGE_SESSIONAPI_H
#define VESK_DEVKIT_BACKEND_SCANPAGE_SESSIONAPI_H

#include <string>

#include "answers/issued.h"
#include "httplib.h"
#include "scanpage/scansessions.h"
#include "server/json.h"

namespace vesk::backend {

/// GET and POST /sessions, and under /sessions/<id>/ GET qr.svg and word, POST press and end.
class SessionApi {
public:
    /// Both references must outlive the server.
    SessionApi(ScanSessions& sessions, const IssuedPreCodes& preCodes);

    /// Sets the routes of the server.
    void install(httplib::Server& server);

private:
    void begin(const JsonMembers& body, httplib::Response& response);
    void image(const std::string& id, httplib::Response& response);
    void word(const std::string& id, const httplib::Request& request, httplib::Response& response);
    void press(const std::string& id, const JsonMembers& body, httplib::Response& response);
    void end(const std::string& id, httplib::Response& response);

    ScanSessions& mSessions;
    const IssuedPreCodes& mPreCodes;
};

} // namespace vesk::backend

#endif
