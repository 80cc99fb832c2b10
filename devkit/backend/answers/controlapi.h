#ifndef VESK_DEVKIT_BACKEND_ANSWERS_CONTROLAPI_H
#define VESK_DEVKIT_BACKEND_ANSWERS_CONTROLAPI_H

#include "answers/requestlog.h"
#include "answers/scriptedanswer.h"
#include "httplib.h"

namespace vesk::backend {

/// GET /health, POST /next, GET /requests, POST /clear; and for every route of the control port,
/// that no page of another site steers the backend.
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
