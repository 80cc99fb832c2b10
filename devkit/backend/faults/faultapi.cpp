#include "faults/faultapi.h"

#include <climits>

#include "server/controlport.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

constexpr int kMaxDelayMs = 10000;

LineFault readFault(const PostedJson& body) {
    LineFault fault;
    fault.action = static_cast<LineFault::Action>(body.choice(
        "action", {"pass", "refuse", "deaf", "reset", "close", "stall", "flood"}, false));
    fault.fromServer = body.choice("from", {"client", "server"}, true) == 1;
    fault.after = static_cast<size_t>(body.number("after", 0, INT_MAX, 0));
    fault.delayMs = body.number("delay_ms", 0, kMaxDelayMs, 0);
    fault.head = body.text("head");
    fault.wave = body.text("wave");
    if (fault.wave.empty() && fault.action == LineFault::Action::Flood) {
        throw Refusal(400, "wave is missing, of which the flood consists");
    }
    return fault;
}

} // namespace

void FaultApi::install(httplib::Server& server) {
    using httplib::Request;
    onGet(server, "/line", [this](const Request&) { return describeLine(); });
    onJson(server, "/line", [this](const Request&, const PostedJson& body) {
        line().set(readFault(body));
        return describeLine();
    });
    onGet(server, "/tls", [this](const Request&) { return describeTls(); });
    onJson(server, "/tls", [this](const Request&, const PostedJson& body) {
        TlsConduct& told = conduct();
        if (body.has("version")) {
            told.speakVersion(body.choice("version", kTlsVersionNames, false));
        }
        if (body.has("sessions") || !body.has("version")) {
            told.treatSessions(body.choice("sessions", kSessionRuleNames, false));
        }
        return describeTls();
    });
    onJson(server, "/certificate", [this](const Request&, const PostedJson& body) {
        conduct().showCertificate(body.choice("kind", kCertificateNames, false));
        return describeTls();
    });
}

TlsConduct& FaultApi::conduct() {
    if (mConduct == nullptr) {
        throw Refusal(400, "this backend has no TLS: start it with --tls");
    }
    return *mConduct;
}

std::string FaultApi::describeTls() const {
    const TlsCounts counts = mConduct == nullptr ? TlsCounts() : mConduct->counts();
    return JsonLine().add("handshakes", counts.handshakes).add("resumed", counts.resumed).text();
}

FaultyLine& FaultApi::line() {
    const std::lock_guard<std::mutex> lock(mMutex);
    if (!mLine) {
        mLine = openLine(mTarget);
    }
    return *mLine;
}

std::string FaultApi::describeLine() {
    const FaultyLine& opened = line();
    const std::string scheme = mConduct == nullptr ? "http" : "https";
    return JsonLine()
        .add("url", scheme + "://localhost:" + std::to_string(opened.port()))
        .add("connections", opened.connections())
        .text();
}

} // namespace vesk::backend
