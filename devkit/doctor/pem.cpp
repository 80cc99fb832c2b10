#include "pem.h"

#include <stdexcept>

namespace vesk::doctor {

namespace {

constexpr const char* kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Throws std::runtime_error at a character that does not belong there.
std::string fromBase64(const std::string& text) {
    const std::string alphabet = kAlphabet;
    std::string bytes;
    unsigned bits = 0;
    int count = 0;
    for (const char c : text) {
        if (c == '\r' || c == '\n' || c == ' ' || c == '\t' || c == '=') {
            continue;
        }
        const size_t value = alphabet.find(c);
        if (value == std::string::npos) {
            throw std::runtime_error("no Base64");
        }
        bits = (bits << 6 | static_cast<unsigned>(value)) & 0xFFFFFF;
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 0xFF);
        }
    }
    return bytes;
}

} // namespace

Pem readPem(const std::string& text) {
    const std::string begin = "-----BEGIN CERTIFICATE-----";
    const std::string end = "-----END CERTIFICATE-----";
    Pem pem;
    pem.privateKey = text.find("PRIVATE KEY-----") != std::string::npos;
    for (size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at + 1)) {
        const size_t first = at + begin.size();
        const size_t last = text.find(end, first);
        try {
            if (last == std::string::npos) {
                throw std::runtime_error("cut off");
            }
            pem.certificates.emplace_back(fromBase64(text.substr(first, last - first)));
        } catch (const std::runtime_error&) {
            ++pem.broken;
        }
    }
    return pem;
}

} // namespace vesk::doctor
