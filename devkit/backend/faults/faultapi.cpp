#include <climits>
#include <mutex>

#include "faults/faults.h"
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

/// What the routes share.
struct Faults {
    TlsConduct* const conduct;
    const int target;
    std::mutex mutex{}; // guards the pointer
    std::unique_ptr<FaultyLine> opened{};

    /// The line, which is opened when it is asked for first.
    FaultyLine& line() {
        const std::lock_guard<std::mutex> lock(mutex);
        if (!opened) {
            opened = openLine(target);
        }
        return *opened;
    }

    std::string describeLine() {
        const FaultyLine& found = line();
        const std::string scheme = conduct == nullptr ? "http" : "https";
        return JsonLine()
            .add("url", scheme + "://localhost:" + std::to_string(found.port()))
            .add("connections", found.connections())
            .text();
    }

    TlsConduct& tls() const {
        if (conduct == nullptr) {
            throw Refusal(400, "this backend has no TLS: start it with --tls");
        }
        return *conduct;
    }

    std::string describeTls() const {
        const TlsCounts counts = conduct == nullptr ? TlsCounts() : conduct->counts();
        return JsonLine()
            .add("handshakes", counts.handshakes)
            .add("resumed", counts.resumed)
            .text();
    }
};

} // namespace

void installFaultApi(httplib::Server& server, TlsConduct* conduct, int target) {
    using httplib::Request;
    const std::shared_ptr<Faults> faults(new Faults{conduct, target});
    onGet(server, "/line", [faults](const Request&) { return faults->describeLine(); });
    onJson(server, "/line", [faults](const Request&, const PostedJson& body) {
        faults->line().set(readFault(body));
        return faults->describeLine();
    });
    onGet(server, "/tls", [faults](const Request&) { return faults->describeTls(); });
    onJson(server, "/tls", [faults](const Request&, const PostedJson& body) {
        TlsConduct& told = faults->tls();
        if (body.has("version")) {
            told.version = body.choice("version", kTlsVersionNames, false);
        }
        if (body.has("sessions") || !body.has("version")) {
            const size_t rule = body.choice("sessions", kSessionRuleNames, false);
            ++told.sessionAge;
            told.sessionRule = rule;
        }
        return faults->describeTls();
    });
    onJson(server, "/certificate", [faults](const Request&, const PostedJson& body) {
        TlsConduct& told = faults->tls();
        const size_t kind = body.choice("kind", kCertificateNames, false);
        ++told.sessionAge; // sessions are forgotten, as after the restart of a server
        told.certificate = kind;
        return faults->describeTls();
    });
}

} // namespace vesk::backend
