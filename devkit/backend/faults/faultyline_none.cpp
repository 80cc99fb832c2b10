#include "faults/faultyline.h"

#include <stdexcept>

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

} // namespace vesk::backend
