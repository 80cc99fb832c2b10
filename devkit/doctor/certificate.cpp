#include "certificate.h"

#include <ctime>
#include <utility>

namespace vesk::doctor {

std::string dayText(int64_t seconds) {
    const std::time_t time = static_cast<std::time_t>(seconds);
    const std::tm* const utc = std::gmtime(&time);
    char text[32] = {};
    // Windows counts until the year 3000.
    return utc != nullptr && std::strftime(text, sizeof text, "%Y-%m-%d", utc) != 0
               ? text
               : "a day far from now";
}

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
