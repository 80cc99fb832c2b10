#ifndef VESK_DEVKIT_BACKEND_CONTROLAPI_H
#define VESK_DEVKIT_BACKEND_CONTROLAPI_H

#include "httplib.h"
#include "requestlog.h"
#include "scriptstore.h"

namespace vesk::backend {

/// GET /health, POST /next, GET /requests, POST /clear.
class ControlApi {
public:
    /// Both references must outlive the server.
    ControlApi(ScriptStore& scripts, RequestLog& log);

    /// Sets the routes of the server.
    void install(httplib::Server& server);

private:
    void queueAnswer(const httplib::Request& request, const httplib::ContentReader& reader,
                     httplib::Response& response);

    ScriptStore& mScripts;
    RequestLog& mLog;
};

} // namespace vesk::backend

#endif
