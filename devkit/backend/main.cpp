#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>

#include "answers/endpoints.h"
#include "faults/faults.h"
#include "scanpage/scanpage.h"
#include "server/controlport.h"
#include "server/httpserver.h"
#include "server/system.h"

namespace {

using namespace vesk::backend;

constexpr int kUsageError = 2;
constexpr int kMaxPort = 65535;
constexpr long long kMaxSkewLimit = 10LL * 365 * 24 * 3600;

/// What the command line asks for.
struct ServerOptions {
    int port = 0;
    int controlPort = 0;
    bool tls = false;
    std::string caOut;
    CheckSettings settings;
};

void describe(CLI::App& app, ServerOptions& options) {
    app.option_defaults()->take_last();
    app.add_option("--port", options.port, "the backend's port; 0 takes any free one")
        ->check(CLI::Range(0, kMaxPort));
    app.add_option("--control-port", options.controlPort,
                   "the port of the control API and the scan page; 0 takes any free one")
        ->check(CLI::Range(0, kMaxPort));
    auto* tls = app.add_flag("--tls", options.tls,
                             "HTTPS with a fresh CA and a certificate for localhost, "
                             "good for 30 days");
    app.add_option("--ca-out", options.caOut,
                   "the file that gets the CA (PEM): the client's cacert.pem")
        ->needs(tls);
    app.add_option("--game-id", options.settings.gameId, "the client's VESK_GAME_ID")
        ->capture_default_str();
    app.add_option("--key", options.settings.key, "the client's VESK_SDK_KEY")
        ->capture_default_str();
    app.add_option("--max-skew", options.settings.maxSkew,
                   "seconds that a request's ts may differ from the clock here")
        ->check(CLI::Range(0LL, kMaxSkewLimit))
        ->capture_default_str();
}

void bindOrThrow(HttpServer& server, int port) {
    if (!server.bind(port)) {
        throw std::runtime_error("cannot listen on 127.0.0.1 port " + std::to_string(port));
    }
}

void serve(const ServerOptions& options) {
    EndSignal endSignal;
    TlsConduct conduct;
    HttpServer backendServer(options.tls ? makeTlsServer(options.caOut, conduct)
                                         : std::make_unique<httplib::Server>());
    HttpServer controlServer(std::make_unique<httplib::Server>());
    bindOrThrow(backendServer, options.port);
    bindOrThrow(controlServer, options.controlPort);

    WaitingRoom waitingRoom;
    RequestLog log(waitingRoom);
    Issued issued;
    ScanSessions sessions(issued, waitingRoom);
    Endpoints endpoints(options.settings, log, issued, waitingRoom);
    endpoints.install(backendServer.routes());
    installControlPort(controlServer.routes());
    endpoints.installControl(controlServer.routes());
    installFaultApi(controlServer.routes(), options.tls ? &conduct : nullptr, backendServer.port());
    sessions.install(controlServer.routes());
    installScanPage(controlServer.routes(), sessions, log, waitingRoom);
    backendServer.start();
    controlServer.start();

    std::printf("vesk-devbackend ready: url=%s://localhost:%d control=http://127.0.0.1:%d\n",
                options.tls ? "https" : "http", backendServer.port(), controlServer.port());
    std::fflush(stdout);

    endSignal.wait();
    waitingRoom.close();
    const bool backendEnded = backendServer.stop();
    if (!controlServer.stop() || !backendEnded) {
        // A thread waits for a peer that says nothing; the system closes what is left.
        std::_Exit(0);
    }
}

} // namespace

int main(int argc, char** argv) {
    ServerOptions options;
    CLI::App app("A login backend for development, on loopback only.", "vesk-devbackend");
    describe(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kUsageError;
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
