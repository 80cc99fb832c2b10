#include "server/digest.h"

#include <openssl/evp.h>
#include <openssl/rand.h>
#include <stdexcept>

namespace vesk::backend {

namespace {

std::string digestHex(std::string_view data, const EVP_MD* algorithm) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    if (EVP_Digest(data.data(), data.size(), digest, &size, algorithm, nullptr) != 1) {
        throw std::runtime_error("OpenSSL computed no digest");
    }
    return toHex(std::string_view(reinterpret_cast<const char*>(digest), size));
}

} // namespace

std::string md5Hex(std::string_view data) {
    return digestHex(data, EVP_md5());
}

std::string sha256Hex(std::string_view data) {
    return digestHex(data, EVP_sha256());
}

std::string randomHex(size_t byteCount) {
    std::string bytes(byteCount, '\0');
    if (RAND_bytes(reinterpret_cast<unsigned char*>(bytes.data()), static_cast<int>(byteCount)) !=
        1) {
        throw std::runtime_error("OpenSSL has no random bytes");
    }
    return toHex(bytes);
}

} // namespace vesk::backend
