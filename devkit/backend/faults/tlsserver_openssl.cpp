#include "faults/tlsserver.h"

#include <fstream>
#include <stdexcept>
#include <utility>

#include "faults/certificatemaker.h"

namespace vesk::backend {

namespace {

/// Chooses the certificate when a handshake begins.
class ChoosingServer : public httplib::SSLServer {
public:
    ChoosingServer(std::unique_ptr<const CertificateMaker> certificates,
                   const CertificateChoice& choice)
        : SSLServer(certificates->serverCertificate(CertificateKind::Good),
                    certificates->serverKey()),
          mCertificates(std::move(certificates)), mChoice(choice) {
        if (is_valid()) {
            SSL_CTX_set_cert_cb(ssl_context(), &choose, this);
        }
    }

private:
    static int choose(SSL* handshake, void* context) {
        const auto* const server = static_cast<const ChoosingServer*>(context);
        const CertificateMaker& certificates = *server->mCertificates;
        X509* const certificate = certificates.serverCertificate(server->mChoice.get());
        return SSL_use_certificate(handshake, certificate) == 1 &&
                       SSL_use_PrivateKey(handshake, certificates.serverKey()) == 1
                   ? 1
                   : 0;
    }

    const std::unique_ptr<const CertificateMaker> mCertificates;
    const CertificateChoice& mChoice;
};

} // namespace

bool hasTls() {
    return true;
}

std::unique_ptr<httplib::Server> makeTlsServer(const std::string& caOut,
                                               const CertificateChoice& choice) {
    auto certificates = std::make_unique<const CertificateMaker>();
    const std::string caPem = certificates->caPem();
    auto server = std::make_unique<ChoosingServer>(std::move(certificates), choice);
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
