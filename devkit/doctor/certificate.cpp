#include "certificate.h"

#include <utility>

namespace vesk::doctor {

PemFile::PemFile(const std::string& text)
    : privateKey(text.find("PRIVATE KEY-----") != std::string::npos) {
    const std::string begin = "-----BEGIN CERTIFICATE-----";
    const std::string end = "-----END CERTIFICATE-----";
    for (size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at + 1)) {
        const size_t last = text.find(end, at);
        auto certificate = last == std::string::npos
                               ? std::nullopt
                               : readCertificate(text.substr(at, last - at) + end + "\n");
        if (certificate) {
            certificates.push_back(std::move(*certificate));
        } else {
            ++broken;
        }
    }
}

} // namespace vesk::doctor
