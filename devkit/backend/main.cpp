#include <cstdio>
#include <exception>
#include <stdexcept>

#include "answers/controlapi.h"
#include "answers/endpoints.h"
#include "faults/faultapi.h"
#include "options.h"
#include "scanpage/scanpage.h"
#include "scanpage/sessionapi.h"
#include "server/endsignal.h"
#include "server/httpserver.h"
#include "server/originguard.h"
#include "server/tlsserver.h"

namespace {

using namespace vesk::backend;

constexpr int kUsageError = 2;

void bindOrThrow(HttpServer& server, int port) {
    if (!server.bind(port)) {
        throw std::runtime_error("cannot listen on 127.0.0.1 port " + std::to_string(port));
    }
}

void serve(const Options& options) {
    EndSignal endSignal;
    const CheckSettings settings{options.gameId, options.key, options.maxSkew};
    ScriptStore scripts;
    Changes changes;
    RequestLog log(changes);
    IssuedPreCodes preCodes;
    ScanSessions sessions(changes);
    ShutdownGate gate;
    Endpoints endpoints(settings, scripts, log, preCodes, gate);
    ControlApi control(scripts, log);
    SessionApi sessionApi(sessions, preCodes);
    ScanPage scanPage(sessions, log, changes);
    CertificateChoice certificate;
    FaultApi faults(options.tls ? &certificate : nullptr);

    HttpServer backendServer(options.tls ? makeTlsServer(options.caOut, certificate)
                                         : std::make_unique<httplib::Server>());
    HttpServer controlServer(std::make_unique<httplib::Server>());
    endpoints.install(backendServer.routes());
    guardOrigins(controlServer.routes());
    control.install(controlServer.routes());
    faults.install(controlServer.routes());
    sessionApi.install(controlServer.routes());
    scanPage.install(controlServer.routes());
    bindOrThrow(backendServer, options.port);
    bindOrThrow(controlServer, options.controlPort);
    endpoints.setPort(backendServer.port());
    faults.setTarget(backendServer.port());
    backendServer.start();
    controlServer.start();

    std::printf("vesk-devbackend ready: url=%s://localhost:%d control=http://127.0.0.1:%d\n",
                options.tls ? "https" : "http", backendServer.port(), controlServer.port());
    std::fflush(stdout);

    endSignal.wait();
    gate.close();
    sessions.close();
    changes.close();
    backendServer.stop();
    controlServer.stop();
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    const std::string problem = parseOptions(argc, argv, options);
    if (!problem.empty()) {
        std::fprintf(stderr, "vesk-devbackend: %s\n%s", problem.c_str(), usageText());
        return kUsageError;
    }
    if (options.help) {
        std::fputs(usageText(), stdout);
        return 0;
    }
    if (options.tls && !hasTls()) {
        std::fputs("vesk-devbackend: this build has no TLS, so leave out --tls and give the SDK "
                   "VESK_URL = http://localhost:PORT\n",
                   stderr);
        return kUsageError;
    }
    try {
        serve(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vesk-devbackend: %s\n", error.what());
        return 1;
    }
    return 0;
}
