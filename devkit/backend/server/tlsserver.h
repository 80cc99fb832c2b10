#ifndef VESK_DEVKIT_BACKEND_SERVER_TLSSERVER_H
#define VESK_DEVKIT_BACKEND_SERVER_TLSSERVER_H

#include <memory>
#include <string>

#include "faults/certificatechoice.h"
#include "httplib.h"

namespace vesk::backend {

/// Whether this build has TLS; that for Windows has none.
bool hasTls();

/// A server with fresh certificates, whose CA goes to the file `caOut` unless that is empty.
/// @param choice what each handshake is given; outlives the server
/// Throws std::runtime_error when that fails, or the build has no TLS.
std::unique_ptr<httplib::Server> makeTlsServer(const std::string& caOut,
                                               const CertificateChoice& choice);

} // namespace vesk::backend

#endif
