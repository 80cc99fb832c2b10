#include "faults/faults.h"

#include <stdexcept>

#include "server/controlport.h"

namespace vesk::backend {

std::unique_ptr<FaultyLine> openLine(int) {
    throw Refusal(400, "a backend on Windows has no faulty line");
}

bool hasTls() {
    return false;
}

std::unique_ptr<httplib::Server> makeTlsServer(const std::string&, TlsConduct&) {
    throw std::runtime_error("this build has no TLS");
}

} // namespace vesk::backend
