#include <stdexcept>

#include "faults/faultyline.h"
#include "faults/tlsserver.h"

namespace vesk::backend {

class FaultyLine::Impl {};

FaultyLine::FaultyLine(int) {
    throw std::runtime_error("a backend on Windows has no faulty line");
}

FaultyLine::~FaultyLine() = default;

int FaultyLine::port() const {
    return 0;
}

size_t FaultyLine::connections() const {
    return 0;
}

void FaultyLine::set(const LineFault&) {}

bool hasTls() {
    return false;
}

std::unique_ptr<httplib::Server> makeTlsServer(const std::string&, TlsConduct&) {
    throw std::runtime_error("this build has no TLS");
}

} // namespace vesk::backend
