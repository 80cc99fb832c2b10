#ifndef VESK_DEVKIT_DOCTOR_CERTIFICATE_H
#define VESK_DEVKIT_DOCTOR_CERTIFICATE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vesk::doctor {

/// What a person wants to know of an X.509 certificate.
struct Certificate {
    std::string subject; ///< the common name, or the organisation when there is none
    std::string issuer;
    int64_t begin = 0; ///< Unix seconds
    int64_t end = 0;
};

/// The certificate of one PEM block, read by the system's library; nothing when it is none.
std::optional<Certificate> readCertificate(const std::string& block);

/// "2026-11-24", the day in UTC of a time in Unix seconds.
std::string dayText(int64_t seconds);

/// What stands in a PEM file.
struct PemFile {
    explicit PemFile(const std::string& text = {});

    std::vector<Certificate> certificates;
    size_t broken = 0;       ///< blocks of certificates that cannot be read
    bool privateKey = false; ///< there is a block of a private key, too
};

} // namespace vesk::doctor

#endif
