#ifndef VESK_DEVKIT_BACKEND_FAULTS_CERTIFICATECHOICE_H
#define VESK_DEVKIT_BACKEND_FAULTS_CERTIFICATECHOICE_H

#include <array>
#include <atomic>
#include <cstddef>
#include <string>

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

} // namespace vesk::backend

#endif
