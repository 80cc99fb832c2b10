#ifndef VESK_DEVKIT_DOCTOR_PEM_H
#define VESK_DEVKIT_DOCTOR_PEM_H

#include <cstddef>
#include <string>
#include <vector>

#include "certificate.h"

namespace vesk::doctor {

/// What stands in a PEM file.
struct Pem {
    std::vector<Certificate> certificates;
    size_t broken = 0;       ///< blocks of certificates that cannot be read
    bool privateKey = false; ///< there is a block of a private key, too
};

Pem readPem(const std::string& text);

} // namespace vesk::doctor

#endif
