#ifndef VESK_DEVKIT_BACKEND_ANSWERS_ENDPOINTS_H
#define VESK_DEVKIT_BACKEND_ANSWERS_ENDPOINTS_H

#include <string>

#include "answers/memory.h"
#include "answers/scriptedanswer.h"
#include "checks/requestcheck.h"
#include "httplib.h"
#include "server/waitingroom.h"

namespace vesk::backend {

/// Checks every request, records it, and answers by its script or by itself.
class Endpoints {
public:
    /// All references must outlive the servers.
    Endpoints(const CheckSettings& settings, RequestLog& log, Issued& issued,
              WaitingRoom& waitingRoom);

    /// Sets the routes of the backend's port: all of them.
    void install(httplib::Server& server);

    /// POST /next, GET /requests, POST /clear.
    void installControl(httplib::Server& server);

private:
    void handle(const httplib::Request& request, const std::string& body,
                httplib::Response& response);
    CheckedRequest check(const ReceivedRequest& request) const;
    Answer defaultAnswer(const CheckedRequest& checked);
    Answer scriptedAnswer(const ScriptedAnswer& script, const std::string& requestBody,
                          const CheckedRequest& checked);
    /// A login that a scripted answer hands out.
    void adoptLogin(const std::string& channelId, const std::string& body);

    const CheckSettings& mSettings;
    RequestLog& mLog;
    Issued& mIssued;
    WaitingRoom& mWaitingRoom;
    ScriptStore mScripts;
};

} // namespace vesk::backend

#endif
