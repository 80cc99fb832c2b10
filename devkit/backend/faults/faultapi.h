#ifndef VESK_DEVKIT_BACKEND_FAULTS_FAULTAPI_H
#define VESK_DEVKIT_BACKEND_FAULTS_FAULTAPI_H

#include <memory>
#include <mutex>
#include <string>

#include "faults/faultyline.h"
#include "faults/tlsserver.h"
#include "httplib.h"

namespace vesk::backend {

/// POST /certificate, GET and POST /tls and /line.
class FaultApi {
public:
    /// @param conduct null without TLS; outlives the server
    /// @param target the port that the line leads to
    FaultApi(TlsConduct* conduct, int target) : mConduct(conduct), mTarget(target) {}

    /// Sets the routes of the server.
    void install(httplib::Server& server);

private:
    /// A Refusal without TLS.
    TlsConduct& conduct();
    std::string describeTls() const;
    /// Opens the line when it is asked for first.
    FaultyLine& line();
    std::string describeLine();

    TlsConduct* mConduct;
    const int mTarget;
    std::mutex mMutex; // guards the pointer
    std::unique_ptr<FaultyLine> mLine;
};

} // namespace vesk::backend

#endif
