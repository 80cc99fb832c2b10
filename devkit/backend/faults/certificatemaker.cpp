#include "faults/certificatemaker.h"

#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>
#include <stdexcept>

namespace vesk::backend {

namespace {

constexpr long kDay = 24L * 3600;
constexpr long kValidDays = 30;
constexpr int kSerialBits = 127;
constexpr long kX509Version3 = 2;

void require(bool succeeded, const char* what) {
    if (!succeeded) {
        throw std::runtime_error(std::string("OpenSSL failed: ") + what);
    }
}

KeyPtr makeKey() {
    KeyPtr key(EVP_EC_gen("P-256"));
    require(key != nullptr, "make a key");
    return key;
}

void setSerial(X509* certificate) {
    // Random, because a client may have seen another certificate of the same issuer name.
    const std::unique_ptr<BIGNUM, Free<BN_free>> number(BN_new());
    require(number && BN_rand(number.get(), kSerialBits, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY) &&
                BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(certificate)) != nullptr,
            "set the serial number");
}

void addToSubject(X509* certificate, const char* field, const char* value) {
    require(X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate), field, MBSTRING_ASC,
                                       reinterpret_cast<const unsigned char*>(value), -1, -1,
                                       0) == 1,
            "set the subject");
}

void addExtension(X509* certificate, X509* issuer, int nid, const char* value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const std::unique_ptr<X509_EXTENSION, Free<X509_EXTENSION_free>> extension(
        X509V3_EXT_conf_nid(nullptr, &context, nid, value));
    require(extension && X509_add_ext(certificate, extension.get(), -1) == 1, "add an extension");
}

/// @param beginDay, endDay its validity, in days from now
CertificatePtr makeCertificate(EVP_PKEY* key, const char* commonName, long beginDay = -1,
                               long endDay = kValidDays - 1) {
    CertificatePtr certificate(X509_new());
    require(certificate != nullptr, "make a certificate");
    require(X509_set_version(certificate.get(), kX509Version3) == 1, "set the version");
    setSerial(certificate.get());
    addToSubject(certificate.get(), "O", "VESK dev kit");
    addToSubject(certificate.get(), "CN", commonName);
    require(X509_gmtime_adj(X509_getm_notBefore(certificate.get()), beginDay * kDay) &&
                X509_gmtime_adj(X509_getm_notAfter(certificate.get()), endDay * kDay),
            "set the validity");
    require(X509_set_pubkey(certificate.get(), key) == 1, "set the key");
    return certificate;
}

/// Whether both numbers of the certificate's ECDSA signature fill their 32 bytes.
bool hasFullLength(const X509* certificate) {
    constexpr int kShorterBits = 31 * 8;
    const ASN1_BIT_STRING* signature = nullptr;
    X509_get0_signature(&signature, nullptr, certificate);
    const unsigned char* der = signature->data;
    const std::unique_ptr<ECDSA_SIG, Free<ECDSA_SIG_free>> numbers(
        d2i_ECDSA_SIG(nullptr, &der, signature->length));
    require(numbers != nullptr, "read the signature");
    return BN_num_bits(ECDSA_SIG_get0_r(numbers.get())) > kShorterBits &&
           BN_num_bits(ECDSA_SIG_get0_s(numbers.get())) > kShorterBits;
}

void sign(X509* certificate, X509* issuer, EVP_PKEY* issuerKey) {
    require(X509_set_issuer_name(certificate, X509_get_subject_name(issuer)) == 1,
            "set the issuer");
    // Wine cannot verify a signature of which a number is shorter than the key, one in 128.
    do {
        require(X509_sign(certificate, issuerKey, EVP_sha256()) > 0, "sign");
    } while (!hasFullLength(certificate));
}

CertificatePtr makeAuthority(EVP_PKEY* key) {
    CertificatePtr certificate = makeCertificate(key, "VESK dev backend CA");
    X509* ca = certificate.get();
    addExtension(ca, ca, NID_basic_constraints, "critical,CA:TRUE,pathlen:0");
    addExtension(ca, ca, NID_key_usage, "critical,keyCertSign,cRLSign");
    addExtension(ca, ca, NID_subject_key_identifier, "hash");
    sign(ca, ca, key);
    return certificate;
}

/// A server's certificate that @p issuer signs; null: it signs itself.
CertificatePtr makeServer(CertificateKind kind, EVP_PKEY* key, X509* issuer, EVP_PKEY* issuerKey) {
    const bool expired = kind == CertificateKind::Expired;
    const bool early = kind == CertificateKind::NotYetValid;
    const long endDay = expired ? -1 : kValidDays - 1;
    const long beginDay = expired ? endDay - kValidDays : (early ? 1 : -1);
    const bool otherName = kind == CertificateKind::WrongName;
    CertificatePtr certificate =
        makeCertificate(key, otherName ? "elsewhere.example" : "localhost", beginDay, endDay);
    X509* server = certificate.get();
    X509* ca = issuer == nullptr ? server : issuer;
    addExtension(server, ca, NID_basic_constraints, "critical,CA:FALSE");
    addExtension(server, ca, NID_key_usage, "critical,digitalSignature");
    addExtension(server, ca, NID_ext_key_usage, "serverAuth");
    addExtension(server, ca, NID_subject_alt_name,
                 otherName ? "DNS:elsewhere.example" : "DNS:localhost,IP:127.0.0.1");
    addExtension(server, ca, NID_subject_key_identifier, "hash");
    addExtension(server, ca, NID_authority_key_identifier, "keyid");
    sign(server, ca, issuerKey);
    return certificate;
}

} // namespace

CertificateMaker::CertificateMaker() {
    const KeyPtr caKey = makeKey();
    const KeyPtr unknownKey = makeKey();
    mCaCertificate = makeAuthority(caKey.get());
    const CertificatePtr unknownCa = makeAuthority(unknownKey.get());
    mServerKey = makeKey();
    for (size_t i = 0; i < kCertificateNames.size(); ++i) {
        const auto kind = static_cast<CertificateKind>(i);
        X509* issuer = mCaCertificate.get();
        EVP_PKEY* issuerKey = caKey.get();
        if (kind == CertificateKind::SelfSigned) {
            issuer = nullptr;
            issuerKey = mServerKey.get();
        } else if (kind == CertificateKind::UnknownCa) {
            issuer = unknownCa.get();
            issuerKey = unknownKey.get();
        }
        mServerCertificates.push_back(makeServer(kind, mServerKey.get(), issuer, issuerKey));
    }
}

std::string CertificateMaker::caPem() const {
    const std::unique_ptr<BIO, Free<BIO_free>> bio(BIO_new(BIO_s_mem()));
    require(bio && PEM_write_bio_X509(bio.get(), mCaCertificate.get()) == 1, "write the PEM");
    char* text = nullptr;
    const long size = BIO_get_mem_data(bio.get(), &text);
    return std::string(text, static_cast<size_t>(size));
}

} // namespace vesk::backend
