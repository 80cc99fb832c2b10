#ifndef VESK_DEVKIT_BACKEND_FAULTS_TLSSERVER_H
#define VESK_DEVKIT_BACKEND_FAULTS_TLSSERVER_H

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <string>

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

constexpr std::array<const char*, 6> kCertificateNames = {
    "good", "expired", "not-yet-valid", "wrong-name", "self-signed", "unknown-ca"};

/// The kind that handshakes are given from now on. Safe to use from several threads.
class CertificateChoice {
public:
    CertificateKind get() const { return mKind; }

    /// @return whether there is a kind of that name.
    bool set(const std::string& name) {
        for (size_t i = 0; i < kCertificateNames.size(); ++i) {
            if (name == kCertificateNames[i]) {
                mKind = static_cast<CertificateKind>(i);
                return true;
            }
        }
        return false;
    }

private:
    std::atomic<CertificateKind> mKind{CertificateKind::Good};
};

/// Whether this build has TLS; that for Windows has none.
bool hasTls();

/// A server with fresh certificates, whose CA goes to the file `caOut` unless that is empty.
/// @param choice what each handshake is given; outlives the server
/// Throws std::runtime_error when that fails, or the build has no TLS.
std::unique_ptr<httplib::Server> makeTlsServer(const std::string& caOut,
                                               const CertificateChoice& choice);

} // namespace vesk::backend

#endif
