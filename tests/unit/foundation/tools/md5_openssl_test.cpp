#include <openssl/evp.h>
#include <random>

#include "foundation/tools/md5.h"
#include "unit/unittest.h"

namespace vesk::test {

using Md5AgainstOpenssl = UnitTest;

static std::string opensslMd5(const std::string& data) {
    unsigned char digest[EVP_MAX_MD_SIZE] = {};
    unsigned int size = 0;
    EXPECT_EQ(EVP_Digest(data.data(), data.size(), digest, &size, EVP_md5(), nullptr), 1);
    std::string hex;
    for (unsigned int i = 0; i < size; ++i) {
        hex += "0123456789abcdef"[digest[i] >> 4];
        hex += "0123456789abcdef"[digest[i] & 15];
    }
    return hex;
}

TEST_F(Md5AgainstOpenssl, RandomBytesInOneAndInSeveralPieces) {
    std::mt19937 random(20200319); // the same bytes each time
    for (size_t length = 0; length <= 301; ++length) {
        std::string data(length == 301 ? 1024 * 1024 : length, '\0');
        for (char& c : data) {
            c = static_cast<char>(random());
        }
        const std::string expected = opensslMd5(data);
        EXPECT_EQ(MD5::Hex(data), expected) << length;
        MD5 pieces;
        for (size_t at = 0; at < data.size();) {
            const size_t piece = std::min<size_t>(1 + random() % 150, data.size() - at);
            pieces.Update(data.data() + at, piece);
            at += piece;
        }
        EXPECT_EQ(pieces.Finalise(), expected) << length;
    }
}

} // namespace vesk::test
