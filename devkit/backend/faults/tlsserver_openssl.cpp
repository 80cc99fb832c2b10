#include "faults/tlsserver.h"

#include <fstream>
#include <stdexcept>
#include <utility>

#include "faults/certificatemaker.h"

namespace vesk::backend {

namespace {

/// Behaves as it is told when a handshake begins.
class ObedientServer : public httplib::SSLServer {
public:
    ObedientServer(std::unique_ptr<const CertificateMaker> certificates, TlsConduct& conduct)
        : SSLServer(certificates->serverCertificate(CertificateKind::Good),
                    certificates->serverKey()),
          mCertificates(std::move(certificates)), mConduct(conduct) {
        if (is_valid()) {
            SSL_CTX* const context = ssl_context();
            SSL_CTX_set_client_hello_cb(context, &begin, this);
            SSL_CTX_set_cert_cb(context, &choose, this);
            conduct.counts = [context] {
                return TlsCounts{SSL_CTX_sess_accept_good(context), SSL_CTX_sess_hits(context)};
            };
        }
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
        const int version = kVersions[conduct.version()];
        const unsigned age = conduct.sessionAge();
        const auto* const ageBytes = reinterpret_cast<const unsigned char*>(&age);
        const bool isFine =
            (conduct.sessionRule() != SessionRule::Choke || !offersSession(handshake)) &&
            SSL_set_min_proto_version(handshake, version) == 1 &&
            SSL_set_max_proto_version(handshake, version) == 1 &&
            SSL_set_session_id_context(handshake, ageBytes, sizeof age) == 1;
        return isFine ? SSL_CLIENT_HELLO_SUCCESS : SSL_CLIENT_HELLO_ERROR;
    }

    static int choose(SSL* handshake, void* context) {
        const auto* const server = static_cast<const ObedientServer*>(context);
        const CertificateMaker& certificates = *server->mCertificates;
        X509* const certificate = certificates.serverCertificate(server->mConduct.certificate());
        return SSL_use_certificate(handshake, certificate) == 1 &&
                       SSL_use_PrivateKey(handshake, certificates.serverKey()) == 1
                   ? 1
                   : 0;
    }

    const std::unique_ptr<const CertificateMaker> mCertificates;
    TlsConduct& mConduct;
};

} // namespace

bool hasTls() {
    return true;
}

std::unique_ptr<httplib::Server> makeTlsServer(const std::string& caOut, TlsConduct& conduct) {
    auto certificates = std::make_unique<const CertificateMaker>();
    const std::string caPem = certificates->caPem();
    auto server = std::make_unique<ObedientServer>(std::move(certificates), conduct);
    if (!server->is_valid()) {
        throw std::runtime_error("the TLS server does not take its certificate");
    }
    if (!caOut.empty()) {
        std::ofstream file(caOut, std::ios::binary | std::ios::trunc);
        file << caPem << std::flush;
        if (!file) {
            throw std::runtime_error("cannot write " + caOut);
        }
    }
    return server;
}

} // namespace vesk::backend
