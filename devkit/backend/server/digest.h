#ifndef VESK_DEVKIT_BACKEND_SERVER_DIGEST_H
#define VESK_DEVKIT_BACKEND_SERVER_DIGEST_H

#include <cstddef>
#include <string>
#include <string_view>

namespace vesk::backend {

/// The bytes as lower-case hexadecimal digits.
inline std::string toHex(std::string_view bytes) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string hex;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        hex += kDigits[byte >> 4];
        hex += kDigits[byte & 15];
    }
    return hex;
}

/// MD5 as 32 lower-case hexadecimal digits. Throws std::runtime_error when that refuses.
std::string md5Hex(std::string_view data);

/// SHA-256 as 64 lower-case hexadecimal digits. Throws std::runtime_error when that refuses.
std::string sha256Hex(std::string_view data);

/// Fresh random bytes as hexadecimal digits. Throws std::runtime_error when there are none.
std::string randomHex(size_t byteCount);

} // namespace vesk::backend

#endif
