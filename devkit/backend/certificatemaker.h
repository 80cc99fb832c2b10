/// @file
/// Certificates for a server on this machine.
#ifndef VESK_DEVKIT_BACKEND_CERTIFICATEMAKER_H
#define VESK_DEVKIT_BACKEND_CERTIFICATEMAKER_H

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>
#include <string>

namespace vesk::backend {

struct FreeCertificate {
    void operator()(X509* certificate) const { X509_free(certificate); }
};
struct FreeKey {
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};
using CertificatePtr = std::unique_ptr<X509, FreeCertificate>;
using KeyPtr = std::unique_ptr<EVP_PKEY, FreeKey>;

/// A certificate authority of its own and a server certificate for `localhost` and 127.0.0.1 that
/// it signed, good from a day ago for thirty days. Both live in memory only, and the authority's
/// key is forgotten when the server certificate is signed.
class CertificateMaker {
public:
    /// Throws std::runtime_error when OpenSSL fails.
    CertificateMaker();

    /// The authority's certificate, for the client's list of trusted ones.
    std::string caPem() const;

    /// Both stay owned by this object.
    X509* serverCertificate() const { return mServerCertificate.get(); }
    EVP_PKEY* serverKey() const { return mServerKey.get(); }

private:
    CertificatePtr mCaCertificate;
    KeyPtr mServerKey;
    CertificatePtr mServerCertificate;
};

} // namespace vesk::backend

#endif // VESK_DEVKIT_BACKEND_CERTIFICATEMAKER_H
