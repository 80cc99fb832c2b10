#ifndef VESK_DEVKIT_BACKEND_FAULTS_FAULTAPI_H
#define VESK_DEVKIT_BACKEND_FAULTS_FAULTAPI_H

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "faults/faultyline.h"
#include "faults/tlsserver.h"
#include "httplib.h"
#include "server/json.h"

namespace vesk::backend {

/// POST /certificate, GET and POST /tls and /line.
class FaultApi {
public:
    /// @param conduct null without TLS; outlives the server
    explicit FaultApi(TlsConduct* conduct) : mConduct(conduct) {}

    /// Sets the routes of the server.
    void install(httplib::Server& server);

    /// The port that the line leads to; before the server starts.
    void setTarget(int port) { mTarget = port; }

private:
    /// Has the conduct take the named members, each if it is there.
    using Take = bool (TlsConduct::*)(const std::string&);
    void setConduct(const JsonMembers& members,
                    const std::vector<std::pair<const char*, Take>>& takes,
                    httplib::Response& response);
    void answerCounts(httplib::Response& response);
    void setLine(const LineFault& fault, httplib::Response& response);
    /// Opens the line when it is asked for first. Throws when that fails.
    FaultyLine& line();
    void answerLine(httplib::Response& response);

    TlsConduct* mConduct;
    int mTarget = 0;
    std::mutex mMutex; // guards the pointer
    std::unique_ptr<FaultyLine> mLine;
};

} // namespace vesk::backend

#endif
