#include "server/digest.h"

#include <windows.h>
#include <bcrypt.h>
#include <stdexcept>

namespace vesk::backend {

namespace {

PUCHAR bytesOf(const char* data) {
    return reinterpret_cast<PUCHAR>(const_cast<char*>(data));
}

std::string digestHex(std::string_view data, LPCWSTR name, size_t size) {
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    std::string digest(size, '\0');
    bool done = BCryptOpenAlgorithmProvider(&algorithm, name, nullptr, 0) == 0;
    if (done) {
        done =
            BCryptHash(algorithm, nullptr, 0, bytesOf(data.data()), static_cast<ULONG>(data.size()),
                       bytesOf(digest.data()), static_cast<ULONG>(digest.size())) == 0;
        BCryptCloseAlgorithmProvider(algorithm, 0);
    }
    if (!done) {
        throw std::runtime_error("Windows computed no digest");
    }
    return toHex(digest);
}

} // namespace

std::string md5Hex(std::string_view data) {
    return digestHex(data, BCRYPT_MD5_ALGORITHM, 16);
}

std::string sha256Hex(std::string_view data) {
    return digestHex(data, BCRYPT_SHA256_ALGORITHM, 32);
}

std::string randomHex(size_t byteCount) {
    std::string bytes(byteCount, '\0');
    if (BCryptGenRandom(nullptr, bytesOf(bytes.data()), static_cast<ULONG>(byteCount),
                        BCRYPT_USE_SYSTEM_PREFERRED_RNG) != 0) {
        throw std::runtime_error("Windows has no random bytes");
    }
    return toHex(bytes);
}

} // namespace vesk::backend
