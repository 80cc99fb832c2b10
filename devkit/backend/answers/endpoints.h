#ifndef VESK_DEVKIT_BACKEND_ANSWERS_ENDPOINTS_H
#define VESK_DEVKIT_BACKEND_ANSWERS_ENDPOINTS_H

#include <string>

#include "answers/issued.h"
#include "answers/requestlog.h"
#include "answers/scriptedanswer.h"
#include "checks/contract.h"
#include "checks/requestcheck.h"
#include "httplib.h"
#include "server/waitingroom.h"

namespace vesk::backend {

/// Checks every request, records it, and answers by its script or by itself.
class Endpoints {
public:
    /// All references must outlive the server.
    Endpoints(const CheckSettings& settings, ScriptStore& scripts, RequestLog& log,
              IssuedPreCodes& preCodes, WaitingRoom& waitingRoom);

    /// Sets the routes of the server.
    void install(httplib::Server& server);

    /// The port that the server got; a scripted action looks its connection up by it.
    void setPort(int port) { mPort = port; }

private:
    struct Answer {
        int status = 200;
        std::string body;
    };

    void handle(const httplib::Request& request, const std::string& body,
                httplib::Response& response);
    CheckedRequest check(const ReceivedRequest& request) const;
    Answer defaultAnswer(const ReceivedRequest& request, const CheckedRequest& checked);
    Answer scriptedAnswer(const ScriptedAnswer& script, const ReceivedRequest& request,
                          const CheckedRequest& checked);
    void adoptLogin(const CheckedRequest& checked, const std::string& body);
    void perform(const ScriptedAnswer& script, const Answer& answer,
                 const httplib::Request& request, httplib::Response& response);
    void hang(int peerPort);

    const CheckSettings& mSettings;
    ScriptStore& mScripts;
    RequestLog& mLog;
    IssuedPreCodes& mPreCodes;
    WaitingRoom& mWaitingRoom;
    IssuedLogins mLogins;
    int mPort = 0;
};

} // namespace vesk::backend

#endif
