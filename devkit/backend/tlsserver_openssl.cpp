#include "tlsserver.h"

#include "certificatemaker.h"

#include <fstream>
#include <stdexcept>

namespace vesk::backend {

bool hasTls() {
    return true;
}

std::unique_ptr<httplib::Server> makeTlsServer(const std::string& caOut) {
    const CertificateMaker certificates;
    auto server = std::make_unique<httplib::SSLServer>(certificates.serverCertificate(),
                                                       certificates.serverKey());
    if (!server->is_valid()) {
        throw std::runtime_error("the TLS server does not take its certificate");
    }
    if (!caOut.empty()) {
        std::ofstream file(caOut, std::ios::binary | std::ios::trunc);
        file << certificates.caPem() << std::flush;
        if (!file) {
            throw std::runtime_error("cannot write " + caOut);
        }
    }
    return server;
}

} // namespace vesk::backend
