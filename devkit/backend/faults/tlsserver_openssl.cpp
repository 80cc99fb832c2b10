#include <array>
#include <fstream>
#include <initializer_list>
#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>
#include <stdexcept>
#include <utility>

#include "faults/faults.h"

namespace vesk::backend {

namespace {

constexpr long kDay = 24L * 3600;
constexpr long kLastDay = 29;
constexpr int kSerialBits = 127;
constexpr long kX509Version3 = 2;
constexpr const char* kThisMachine = "DNS:localhost,IP:127.0.0.1";

enum class Issuer { Ca, Itself, UnknownCa };

/// What a server's certificate says, and who has signed it.
struct Recipe {
    const char* host;
    const char* altNames;
    long beginDay; ///< of its validity, from now
    long endDay;
    Issuer issuer;
};

/// In the order of kCertificateNames: in each but the first one thing is wrong.
constexpr std::array<Recipe, 6> kRecipes = {{
    {"localhost", kThisMachine, -1, kLastDay, Issuer::Ca},
    {"localhost", kThisMachine, -2 - kLastDay, -1, Issuer::Ca},
    {"localhost", kThisMachine, 1, kLastDay, Issuer::Ca},
    {"elsewhere.example", "DNS:elsewhere.example", -1, kLastDay, Issuer::Ca},
    {"localhost", kThisMachine, -1, kLastDay, Issuer::Itself},
    {"localhost", kThisMachine, -1, kLastDay, Issuer::UnknownCa},
}};

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

CertificatePtr makeCertificate(EVP_PKEY* key, const char* commonName, long beginDay, long endDay) {
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

void sign(X509* certificate, X509* issuer, EVP_PKEY* issuerKey,
          std::initializer_list<std::pair<int, const char*>> extensions) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    for (const auto& [nid, value] : extensions) {
        const std::unique_ptr<X509_EXTENSION, Free<X509_EXTENSION_free>> extension(
            X509V3_EXT_conf_nid(nullptr, &context, nid, value));
        require(extension && X509_add_ext(certificate, extension.get(), -1) == 1,
                "add an extension");
    }
    require(X509_set_issuer_name(certificate, X509_get_subject_name(issuer)) == 1,
            "set the issuer");
    // Wine cannot verify a signature of which a number is shorter than the key, one in 128.
    do {
        require(X509_sign(certificate, issuerKey, EVP_sha256()) > 0, "sign");
    } while (!hasFullLength(certificate));
}

/// Whoever signs certificates.
struct Authority {
    KeyPtr key = makeKey();
    CertificatePtr certificate = makeCertificate(key.get(), "VESK dev backend CA", -1, kLastDay);

    Authority() {
        sign(certificate.get(), certificate.get(), key.get(),
             {{NID_basic_constraints, "critical,CA:TRUE,pathlen:0"},
              {NID_key_usage, "critical,keyCertSign,cRLSign"},
              {NID_subject_key_identifier, "hash"}});
    }

    std::string pem() const {
        const std::unique_ptr<BIO, Free<BIO_free>> bio(BIO_new(BIO_s_mem()));
        require(bio && PEM_write_bio_X509(bio.get(), certificate.get()) == 1, "write the PEM");
        char* text = nullptr;
        const long size = BIO_get_mem_data(bio.get(), &text);
        return std::string(text, static_cast<size_t>(size));
    }
};

/// One certificate of each recipe. They live in memory only and share one key; the authority's is
/// forgotten when they are signed.
struct Certificates {
    KeyPtr key = makeKey();
    std::vector<CertificatePtr> all;

    explicit Certificates(const Authority& ca) {
        const Authority unknownCa;
        for (const Recipe& recipe : kRecipes) {
            const Authority& other = recipe.issuer == Issuer::Ca ? ca : unknownCa;
            const bool byItself = recipe.issuer == Issuer::Itself;
            all.push_back(makeCertificate(key.get(), recipe.host, recipe.beginDay, recipe.endDay));
            X509* const server = all.back().get();
            sign(server, byItself ? server : other.certificate.get(),
                 byItself ? key.get() : other.key.get(),
                 {{NID_basic_constraints, "critical,CA:FALSE"},
                  {NID_key_usage, "critical,digitalSignature"},
                  {NID_ext_key_usage, "serverAuth"},
                  {NID_subject_alt_name, recipe.altNames},
                  {NID_subject_key_identifier, "hash"},
                  {NID_authority_key_identifier, "keyid"}});
        }
    }
};

/// Behaves as it is told when a handshake begins.
class ObedientServer : public httplib::SSLServer {
public:
    ObedientServer(Certificates certificates, TlsConduct& conduct)
        : SSLServer(certificates.all.front().get(), certificates.key.get()),
          mCertificates(std::move(certificates)), mConduct(conduct) {
        if (!is_valid()) {
            throw std::runtime_error("the TLS server does not take its certificate");
        }
        SSL_CTX* const context = ssl_context();
        SSL_CTX_set_client_hello_cb(context, &begin, this);
        SSL_CTX_set_cert_cb(context, &choose, this);
        conduct.counts = [context] {
            return TlsCounts{SSL_CTX_sess_accept_good(context), SSL_CTX_sess_hits(context)};
        };
    }

private:
    static bool offersSession(SSL* handshake) {
        const unsigned char* data = nullptr;
        size_t size = 0;
        return SSL_client_hello_get0_ext(handshake, TLSEXT_TYPE_psk, &data, &size) == 1 ||
               (SSL_client_hello_get0_ext(handshake, TLSEXT_TYPE_session_ticket, &data, &size) ==
                    1 &&
                size > 0);
    }

    static int begin(SSL* handshake, int* /*alert*/, void* context) {
        TlsConduct& conduct = static_cast<const ObedientServer*>(context)->mConduct;
        static constexpr int kVersions[] = {0, TLS1_2_VERSION, TLS1_3_VERSION};
        const int version = kVersions[conduct.version];
        const auto rule = static_cast<SessionRule>(conduct.sessionRule.load());
        const unsigned age =
            rule == SessionRule::Refuse ? ++conduct.sessionAge : conduct.sessionAge.load();
        const auto* const ageBytes = reinterpret_cast<const unsigned char*>(&age);
        const bool isFine = (rule != SessionRule::Choke || !offersSession(handshake)) &&
                            SSL_set_min_proto_version(handshake, version) == 1 &&
                            SSL_set_max_proto_version(handshake, version) == 1 &&
                            SSL_set_session_id_context(handshake, ageBytes, sizeof age) == 1;
        return isFine ? SSL_CLIENT_HELLO_SUCCESS : SSL_CLIENT_HELLO_ERROR;
    }

    static int choose(SSL* handshake, void* context) {
        const auto* const server = static_cast<const ObedientServer*>(context);
        X509* const certificate = server->mCertificates.all[server->mConduct.certificate].get();
        return SSL_use_certificate(handshake, certificate) == 1 &&
                       SSL_use_PrivateKey(handshake, server->mCertificates.key.get()) == 1
                   ? 1
                   : 0;
    }

    const Certificates mCertificates;
    TlsConduct& mConduct;
};

} // namespace

bool hasTls() {
    return true;
}

std::unique_ptr<httplib::Server> makeTlsServer(const std::string& caOut, TlsConduct& conduct) {
    const Authority ca;
    auto server = std::make_unique<ObedientServer>(Certificates(ca), conduct);
    if (!caOut.empty()) {
        std::ofstream file(caOut, std::ios::binary | std::ios::trunc);
        file << ca.pem() << std::flush;
        if (!file) {
            throw std::runtime_error("cannot write " + caOut);
        }
    }
    return server;
}

} // namespace vesk::backend
