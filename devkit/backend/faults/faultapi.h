#ifndef VESK_DEVKIT_BACKEND_FAULTS_FAULTAPI_H
#define VESK_DEVKIT_BACKEND_FAULTS_FAULTAPI_H

#include <memory>
#include <mutex>
#include <string>

#include "faults/faultyline.h"
#include "faults/tlsserver.h"
#include "httplib.h"

namespace vesk::backend {

/// POST /certificate, GET and POST /line.
class FaultApi {
public:
    /// @param choice null without TLS; outlives the server
    explicit FaultApi(CertificateChoice* choice) : mChoice(choice) {}

    /// Sets the routes of the server.
    void install(httplib::Server& server);

    /// The port that the line leads to; before the server starts.
    void setTarget(int port) { mTarget = port; }

private:
    void chooseCertificate(const std::string& kind, httplib::Response& response);
    void setLine(const LineFault& fault, httplib::Response& response);
    /// Opens the line when it is asked for first. Throws when that fails.
    FaultyLine& line();
    void answerLine(httplib::Response& response);

    CertificateChoice* mChoice;
    int mTarget = 0;
    std::mutex mMutex; // guards the pointer
    std::unique_ptr<FaultyLine> mLine;
};

} // namespace vesk::backend

#endif
