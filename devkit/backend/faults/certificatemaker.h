#ifndef VESK_DEVKIT_BACKEND_FAULTS_CERTIFICATEMAKER_H
#define VESK_DEVKIT_BACKEND_FAULTS_CERTIFICATEMAKER_H

#include <memory>
#include <openssl/evp.h>
#include <openssl/x509.h>
#include <string>
#include <vector>

#include "faults/tlsserver.h"

namespace vesk::backend {

/// Owns an object of OpenSSL's.
template <auto kFree>
struct Free {
    template <typename Object>
    void operator()(Object* object) const {
        kFree(object);
    }
};
using CertificatePtr = std::unique_ptr<X509, Free<X509_free>>;
using KeyPtr = std::unique_ptr<EVP_PKEY, Free<EVP_PKEY_free>>;

/// A certificate authority of its own and the server's certificates, one of each kind. The good one
/// is for `localhost` and 127.0.0.1, signed by the authority, good from a day ago for thirty days;
/// in each other one thing is wrong. They live in memory only and share one key; the authority's is
/// forgotten when they are signed.
class CertificateMaker {
public:
    /// Throws std::runtime_error when OpenSSL fails.
    CertificateMaker();

    /// The authority's certificate, for the client's list of trusted ones.
    std::string caPem() const;

    /// Both stay owned by this object.
    X509* serverCertificate(CertificateKind kind) const {
        return mServerCertificates[static_cast<size_t>(kind)].get();
    }
    EVP_PKEY* serverKey() const { return mServerKey.get(); }

private:
    CertificatePtr mCaCertificate;
    KeyPtr mServerKey;
    std::vector<CertificatePtr> mServerCertificates;
};

} // namespace vesk::backend

#endif
