#include "certificatemaker.h"
#include "consolefeed.h"
#include "consolepage.h"
#include "controlapi.h"
#include "endpoints.h"
#include "httpserver.h"
#include "options.h"
#include "originguard.h"
#include "sessionapi.h"

#include <signal.h>

#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>

namespace {

using namespace vesk::backend;

constexpr int kUsageError = 2;

/// Blocked before any thread starts, so that only waitForEnd() sees them.
sigset_t blockEndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

void waitForEnd(const sigset_t& signals) {
    int received = 0;
    sigwait(&signals, &received);
}

std::unique_ptr<httplib::Server> makeTlsServer(const Options& options) {
    const CertificateMaker certificates;
    auto server = std::make_unique<httplib::SSLServer>(certificates.serverCertificate(),
                                                       certificates.serverKey());
    if (!server->is_valid()) {
        throw std::runtime_error("the TLS server does not take its certificate");
    }
    if (!options.caOut.empty()) {
        std::ofstream file(options.caOut, std::ios::binary | std::ios::trunc);
        file << certificates.caPem() << std::flush;
        if (!file) {
            throw std::runtime_error("cannot write " + options.caOut);
        }
    }
    return server;
}

void bindOrThrow(HttpServer& server, int port) {
    if (!server.bind(port)) {
        throw std::runtime_error("cannot listen on 127.0.0.1 port " + std::to_string(port));
    }
}

void serve(const Options& options) {
    const sigset_t signals = blockEndSignals();
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
    ConsoleFeed feed(sessions, log, changes);

    HttpServer backendServer(options.tls ? makeTlsServer(options)
                                         : std::make_unique<httplib::Server>());
    HttpServer controlServer(std::make_unique<httplib::Server>());
    endpoints.install(backendServer.routes());
    guardOrigins(controlServer.routes());
    control.install(controlServer.routes());
    sessionApi.install(controlServer.routes());
    feed.install(controlServer.routes());
    installConsolePage(controlServer.routes());
    bindOrThrow(backendServer, options.port);
    bindOrThrow(controlServer, options.controlPort);
    endpoints.setPort(backendServer.port());
    backendServer.start();
    controlServer.start();

    std::printf("vesk-devbackend ready: url=%s://localhost:%d control=http://127.0.0.1:%d\n",
                options.tls ? "https" : "http", backendServer.port(), controlServer.port());
    std::fflush(stdout);

    waitForEnd(signals);
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
    try {
        serve(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vesk-devbackend: %s\n", error.what());
        return 1;
    }
    return 0;
}
