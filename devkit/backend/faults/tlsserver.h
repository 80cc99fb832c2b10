#ifndef VESK_DEVKIT_BACKEND_FAULTS_TLSSERVER_H
#define VESK_DEVKIT_BACKEND_FAULTS_TLSSERVER_H

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "httplib.h"

namespace vesk::backend {

/// What is right or wrong with a certificate; the order is that of kCertificateNames.
enum class CertificateKind : size_t {
    Good,
    Expired,
    NotYetValid,
    WrongName,
    SelfSigned,
    UnknownCa
};

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

/// How the server behaves in the handshakes from now on. Safe to use from several threads.
class TlsConduct {
public:
    CertificateKind certificate() const {
        return static_cast<CertificateKind>(mCertificate.load());
    }
    SessionRule sessionRule() const { return static_cast<SessionRule>(mSessionRule.load()); }
    size_t version() const { return mVersion; }

    /// Sessions are resumed under the number alone under which they were made.
    unsigned sessionAge() { return sessionRule() == SessionRule::Refuse ? ++mAge : mAge.load(); }

    /// Each takes an index into its list above. Another certificate makes sessions forgotten, as
    /// the restart of a server does.
    void showCertificate(size_t index) {
        ++mAge;
        mCertificate = index;
    }
    void treatSessions(size_t index) {
        ++mAge;
        mSessionRule = index;
    }
    void speakVersion(size_t index) { mVersion = index; }

    /// Of the server's handshakes until now; the server sets it.
    std::function<TlsCounts()> counts = [] { return TlsCounts(); };

private:
    std::atomic<size_t> mCertificate{0};
    std::atomic<size_t> mSessionRule{0};
    std::atomic<size_t> mVersion{0};
    std::atomic<unsigned> mAge{0};
};

/// Whether this build has TLS; that for Windows has none.
bool hasTls();

/// A server with fresh certificates, whose CA goes to the file `caOut` unless that is empty.
/// @param conduct how it behaves; outlives the server
/// Throws std::runtime_error when that fails, or the build has no TLS.
std::unique_ptr<httplib::Server> makeTlsServer(const std::string& caOut, TlsConduct& conduct);

} // namespace vesk::backend

#endif
