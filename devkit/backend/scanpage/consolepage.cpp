#include "scanpage/consolepage.h"

#include <string>

#include "scanpage/consolefiles.h"

namespace vesk::backend {

namespace {

constexpr const char* kPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

void serve(httplib::Server& server, const char* path, std::string_view content, const char* type) {
    server.Get(path, [content, type](const httplib::Request&, httplib::Response& response) {
        response.set_header("Content-Security-Policy", kPolicy);
        response.set_header("X-Content-Type-Options", "nosniff");
        response.set_header("Cache-Control", "no-store");
        response.set_content(content.data(), content.size(), type);
    });
}

} // namespace

void installConsolePage(httplib::Server& server) {
    serve(server, "/", kConsoleHtml, "text/html; charset=utf-8");
    serve(server, "/console\\.css", kConsoleCss, "text/css; charset=utf-8");
    serve(server, "/console\\.js", kConsoleJs, "text/javascript; charset=utf-8");
    serve(server, "/icon\\.svg", kConsoleIcon, "image/svg+xml");
}

} // namespace vesk::backend
