#include "server/tlsserver.h"

#include <stdexcept>

namespace vesk::backend {

bool hasTls() {
    return false;
}

std::unique_ptr<httplib::Server> makeTlsServer(const std::string&, const CertificateChoice&) {
    throw std::runtime_error("this build has no TLS");
}

} // namespace vesk::backend
