#ifndef VESK_DEVKIT_BACKEND_FAULTS_FAULTS_H
#define VESK_DEVKIT_BACKEND_FAULTS_FAULTS_H

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "httplib.h"

namespace vesk::backend {

/// What a line does to each connection.
struct LineFault {
    /// In the order of the names.
    enum class Action {
        Pass,   ///< carries everything
        Refuse, ///< nobody listens
        Deaf,   ///< connection attempts are not answered
        Reset,  ///< the client sees a TCP reset
        Close,  ///< the client sees an orderly end
        Stall,  ///< nothing comes any more
        Flood,  ///< nothing is carried; the client is sent texts without an end
    };
    Action action = Action::Pass;
    size_t after = 0;        ///< the bytes that are carried before a reset, close or stall
    bool fromServer = false; ///< whose bytes count: the server's, else the client's
    int delayMs = 0;         ///< how late everything comes, one way
    std::string head;        ///< what a flood begins with
    std::string wave;        ///< what it goes on with, again and again
};

/// A port that carries connections to another port of this machine, byte for byte, below TLS.
class FaultyLine {
public:
    FaultyLine() = default;
    FaultyLine(const FaultyLine&) = delete;
    FaultyLine& operator=(const FaultyLine&) = delete;
    virtual ~FaultyLine() = default;

    virtual int port() const = 0;

    /// The connections that have been made until now.
    virtual size_t connections() const = 0;

    /// Ends what is connected; from now on connections meet this fault.
    virtual void set(const LineFault& fault) = 0;
};

/// Opens a line. Throws a Refusal when there is no port, or lines cannot be had.
/// @param target the port that it leads to
std::unique_ptr<FaultyLine> openLine(int target);

/// What is right or wrong with a certificate.
inline const std::vector<std::string> kCertificateNames = {
    "good", "expired", "not-yet-valid", "wrong-name", "self-signed", "unknown-ca"};

/// What becomes of the sessions that clients offer to resume.
enum class SessionRule : size_t {
    Keep,
    Forget, ///< those handed out until now; then as above
    Refuse, ///< each, and hands out others
    Choke,  ///< ends the handshake of whoever offers one
};
inline const std::vector<std::string> kSessionRuleNames = {"keep", "forget", "refuse", "choke"};

/// The protocol versions that are spoken.
inline const std::vector<std::string> kTlsVersionNames = {"any", "1.2", "1.3"};

struct TlsCounts {
    long handshakes = 0;
    long resumed = 0; ///< how many of them were of a session that the client offered
};

/// How the server behaves in the handshakes from now on.
struct TlsConduct {
    // Each the index of a name above.
    std::atomic<size_t> certificate{0};
    std::atomic<size_t> sessionRule{0};
    std::atomic<size_t> version{0};
    /// Sessions are resumed under the number alone under which they were made.
    std::atomic<unsigned> sessionAge{0};
    /// Of the server's handshakes until now; the server sets it.
    std::function<TlsCounts()> counts = [] { return TlsCounts(); };
};

/// Whether this build has TLS; that for Windows has none.
bool hasTls();

/// A server with fresh certificates, whose CA goes to the file `caOut` unless that is empty.
/// @param conduct how it behaves; outlives the server
/// Throws std::runtime_error when that fails, or the build has no TLS.
std::unique_ptr<httplib::Server> makeTlsServer(const std::string& caOut, TlsConduct& conduct);

/// POST /certificate, GET and POST /tls and /line.
/// @param conduct null without TLS; outlives the server
/// @param target the port that the line leads to
void installFaultApi(httplib::Server& server, TlsConduct* conduct, int target);

} // namespace vesk::backend

#endif
